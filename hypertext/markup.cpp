#include "hypertext/markup.h"
