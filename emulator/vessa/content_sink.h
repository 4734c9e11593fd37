#pragma once

#include "emulator/content_sink.h"
