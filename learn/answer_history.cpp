#include "learn/answer_history.h"
