#include "doors/fxplug/FieldLines.h"

#include "doors/fxplug/PluginRaster_FXPLUG_Impl.h"
#include "doors/fxplug/RowCopy.h"

#include <algorithm>
#include <limits>

namespace orbel {

namespace {

// The rows as they lie in memory; their layout does not matter here.
RasterInfo rowsOf(FxBitmap* bitmap) {
    RasterInfo rows;
    if (bitmap != nil && [bitmap dataPtr] != nullptr) {
        rows.data = static_cast<std::uint8_t*>([bitmap dataPtr]);
        rows.width = static_cast<int>([bitmap width]);
        rows.height = static_cast<int>([bitmap height]);
        rows.rowBytes = static_cast<int>([bitmap rowBytes]);
        rows.bytesPerPixel = bitmapPixelSize(bitmap);
    }
    return rows;
}

Owned<FxBitmap*> makeBitmap(const FxImageInfo& info) {
    // By name: the class is the host's, and an old host may lack it.
    const Class found = NSClassFromString(@"FxBitmap");
    return Owned<FxBitmap*>([static_cast<FxBitmap*>([found alloc]) initWithInfo:info]);
}

} // namespace

Owned<FxBitmap*> render_lineDouble(FxBitmap* field) {
    const RasterInfo lines = rowsOf(field);
    if (lines.data == nullptr || lines.height > std::numeric_limits<int>::max() / 2) {
        return Owned<FxBitmap*>(nil);
    }
    FxImageInfo info = [field imageInfo];
    info.height *= 2;
    Owned<FxBitmap*> frame = makeBitmap(info);
    const RasterInfo doubled = rowsOf(frame.get());
    if (doubled.height > 0) {
        copyRows(lines, everySecondRow(doubled, 0));
        copyRows(lines, everySecondRow(doubled, 1));
    }
    return frame;
}

void render_lineHalf(FxBitmap* frame, FxBitmap* field, bool odd) {
    const RasterInfo doubled = rowsOf(frame);
    const int first = odd ? 1 : 0;
    if (doubled.height > first) {
        copyRows(everySecondRow(doubled, first), rowsOf(field));
    }
}

Owned<FxBitmap*> getSameSizedInputAsOutput(FxBitmap* input, FxBitmap* output) {
    const RasterInfo from = rowsOf(input);
    const RasterInfo to = rowsOf(output);
    if (from.data == nullptr || to.data == nullptr) {
        return Owned<FxBitmap*>(nil);
    }
    // Pixels of another size would be overrun by the renderer.
    if (from.width == to.width && from.height == to.height &&
        from.bytesPerPixel == to.bytesPerPixel) {
        return Owned<FxBitmap*>([input retain]);
    }
    Owned<FxBitmap*> resized = makeBitmap([output imageInfo]);
    RasterInfo rows = rowsOf(resized.get());
    rows.height = std::min(rows.height, from.height);
    clearRows(rows);
    copyRows(from, rows);
    return resized;
}

} // namespace orbel
