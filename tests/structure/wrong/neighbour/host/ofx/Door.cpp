#include "host/memory/Door.h"
