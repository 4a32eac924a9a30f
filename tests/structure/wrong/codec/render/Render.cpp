#include <libavcodec/avcodec.h>
