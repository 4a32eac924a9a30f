#include "doors/fxplug/Door.h"
