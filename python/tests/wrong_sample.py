"""A program with mistakes that a type checker must find, each on a line with `# error`."""
import numpy as np

import scanline

scan = scanline.as_scan(np.zeros((3, 40, 3)))
scanline.qo_getLineDownJumps(scan[0], "0", 2.0)  # error
scanline.qo_getLineDownJumps(np.zeros((40, 3)), 0, 2.0)  # error
scanline.SQO_bagParam(bagWidth=1.0)  # error
scanline.qo_lineDataSmoothing(scan[0], 5).sum_of_all  # error
scanline.qo_getLineLocalPeaks(scan[0], 0, 2.0).valley  # error
scanline.ju_noiseFilter(scan)  # error
