#pragma once

#include "emulator/tag_text.h"
