#include "render/Render.h"
