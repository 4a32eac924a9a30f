#include "Render.h"
