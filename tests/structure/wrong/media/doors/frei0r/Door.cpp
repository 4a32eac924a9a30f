#include "media/MediaReader.h"
