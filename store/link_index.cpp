#include "store/link_index.h"
