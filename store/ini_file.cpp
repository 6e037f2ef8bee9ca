#include "store/ini_file.h"
