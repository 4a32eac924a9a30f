#pragma once
#include "render/B.h"
