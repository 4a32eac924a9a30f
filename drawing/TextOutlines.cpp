#include "drawing/TextOutlines.h"

namespace orbel {

void replaceTexts(xmlNode* /*root*/, const Cascade& /*cascade*/,
                  std::vector<std::string>* /*notes*/) {}

} // namespace orbel
