#include "store/learn_index.h"
