#include "doors/memory/Door.h"
