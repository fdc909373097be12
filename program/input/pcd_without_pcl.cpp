#include "base/failure.h"
#include "input/readers.h"
#include "input/scan_input.h"

namespace program {

RawScan readPcd(const InputOptions& options) {
  throw Failure(ExitCode::badInput,
                options.path +
                    ": is PCD, which this build cannot read. Install PCL (package libpcl-dev) and "
                    "build again, or save the scan as PLY, NPY or TIFF");
}

}  // namespace program
