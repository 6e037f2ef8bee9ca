#include "hypertext/media.h"
