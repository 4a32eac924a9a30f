# Writes the commit that is being built into a source file, only when it has changed, so that nothing
# is compiled for nothing. Called with -DSOURCE=folder -DOUTPUT=file.
execute_process(
    COMMAND git describe --always --dirty --abbrev=12
    WORKING_DIRECTORY "${SOURCE}"
    OUTPUT_VARIABLE commit
    OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET
    RESULT_VARIABLE failed)
if(failed OR commit STREQUAL "")
    set(commit "unknown")
endif()
file(CONFIGURE OUTPUT "${OUTPUT}" CONTENT [[
#include "film/BuildInfo.h"

namespace orbel {

const char* buildCommit() {
    return "@commit@";
}

} // namespace orbel
]] @ONLY)
