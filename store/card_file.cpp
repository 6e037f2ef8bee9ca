#include "store/card_file.h"
