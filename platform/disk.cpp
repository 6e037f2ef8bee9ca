#include "platform/disk.h"
