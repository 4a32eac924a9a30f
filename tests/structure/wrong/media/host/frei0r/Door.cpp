#include "app/media/MediaReader.h"
