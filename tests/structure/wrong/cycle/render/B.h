#pragma once
#include "render/A.h"
