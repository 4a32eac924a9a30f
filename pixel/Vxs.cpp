#include "pixel/Vxs.h"

namespace orbel::Vxs {

template class ImageBuffer<unsigned char, PixelARGB<unsigned char>>;
template class ImageBuffer<float, PixelARGB<float>>;
template class ImageBuffer<double, PixelARGB<double>>;
template class ImageProc<unsigned char, PixelARGB<unsigned char>>;
template class ImageProc<float, PixelARGB<float>>;
template class ImageProc<double, PixelARGB<double>>;

} // namespace orbel::Vxs
