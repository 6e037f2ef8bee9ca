#include "store/card_table.h"
