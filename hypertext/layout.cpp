#include "hypertext/layout.h"
