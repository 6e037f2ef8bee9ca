#pragma once

#include "store/program_settings.h"
