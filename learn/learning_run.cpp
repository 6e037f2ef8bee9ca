#include "learn/learning_run.h"
