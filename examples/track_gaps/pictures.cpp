#include "pictures.h"

#include <algorithm>
#include <iterator>

#include <scanline/geometry.h>
#include <scanline/scan_bounds.h>
#include "height_map.h"
#include "marks.h"
#include "profile.h"
#include "text_table.h"

namespace examples {
namespace {

const cv::Size2d kLargestMap(740.0, 600.0);

const cv::Scalar kCentre = rgb(255, 84, 60);
const cv::Scalar kRims = rgb(255, 255, 255);
const cv::Scalar kBridged = rgb(90, 170, 255);
const cv::Scalar kTrace = rgb(38, 84, 150);

/// The scan with z as a height over its deepest sample, as maps show it.
Scan heightsOf(Scan scan) {
  constexpr double kMeasured = 0.001;
  double deepest = 0.0;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      deepest = std::max(deepest, sample.pt3D.z);
    }
  }
  for (Line& line : scan) {
    for (STesk3DPosition& sample : line) {
      sample.pt3D.z = isMeasured(sample) ? deepest - sample.pt3D.z + kMeasured : 0.0;
    }
  }
  return scan;
}

/// Colours for the gaps and the faces around them; what stands much higher is all one colour.
STeskRangeD coloursFor(const Scan& heights) {
  std::vector<double> z;
  for (const Line& line : heights) {
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        z.push_back(sample.pt3D.z);
      }
    }
  }
  if (z.empty()) {
    return {0.0, 1.0};
  }
  const auto at = [&](std::size_t rank) {
    const auto nth = z.begin() + static_cast<std::ptrdiff_t>(rank);
    std::nth_element(z.begin(), nth, z.end());
    return *nth;
  };
  const double deep = at(z.size() / 200);
  const double face = at(z.size() / 2);
  return widened({deep, face + 1.5 * (face - deep)}, 0.0);
}

/// Draws a tree piece by piece: its rims and centre where it was seen, a link where it was bridged.
void drawTrack(Canvas& canvas, const Plot& plot, const GapTrack& track) {
  std::vector<cv::Point2d> centre;
  std::vector<cv::Point2d> lower;
  std::vector<cv::Point2d> upper;
  const auto finishPiece = [&] {
    canvas.polyline(lower, kRims, 1.2);
    canvas.polyline(upper, kRims, 1.2);
    drawRimmedLine(canvas, centre, kCentre);
    centre.clear();
    lower.clear();
    upper.clear();
  };
  for (std::size_t i = 0; i < track.gaps.size(); ++i) {
    const SQO_basicFeatureGap& gap = track.gaps[i];
    const cv::Point2d at = plot.at(track.centres[i].x, track.centres[i].y);
    const int missed = i > 0 ? gap.lineIdx - track.gaps[i - 1].lineIdx - 1 : 0;
    if (missed > kFewLines) {
      const cv::Point2d before = centre.back();
      finishPiece();
      drawRimmedLine(canvas, {before, at}, kBridged);
    }
    centre.push_back(at);
    lower.push_back(plot.at(gap.gapStart.pt3D.x, gap.gapStart.pt3D.y));
    upper.push_back(plot.at(gap.gapEnd.pt3D.x, gap.gapEnd.pt3D.y));
  }
  finishPiece();
}

std::vector<SQO_basicFeatureGap> gapsOnLine(const std::vector<GapTrack>& tracks, int lineIdx) {
  std::vector<SQO_basicFeatureGap> gaps;
  for (const GapTrack& track : tracks) {
    std::copy_if(track.gaps.begin(), track.gaps.end(), std::back_inserter(gaps),
                 [=](const SQO_basicFeatureGap& gap) { return gap.lineIdx == lineIdx; });
  }
  return gaps;
}

/// The measured samples around the gaps; all of them if there are no gaps.
Line sectionAround(const Line& line, const std::vector<SQO_basicFeatureGap>& gaps) {
  constexpr double kMarginInWidths = 2.5;
  Line section;
  for (const STesk3DPosition& sample : line) {
    bool isBehindFirst = gaps.empty();
    bool isBeforeLast = gaps.empty();
    for (const SQO_basicFeatureGap& gap : gaps) {
      const auto [low, high] = std::minmax(gap.gapStart.pt3D.y, gap.gapEnd.pt3D.y);
      const double margin = kMarginInWidths * (high - low);
      isBehindFirst = isBehindFirst || sample.pt3D.y > low - margin;
      isBeforeLast = isBeforeLast || sample.pt3D.y < high + margin;
    }
    if (isMeasured(sample) && isBehindFirst && isBeforeLast) {
      section.push_back(sample);
    }
  }
  return section;
}

Plot profilePlot(const Line& section, const cv::Rect2d& place, const std::string& unit) {
  Scan scan = {section};
  const STesk3DRangeD box = qo_getScanDataROI_vector(scan);
  const bool isEmpty = section.empty();
  const STeskRangeD y = isEmpty ? STeskRangeD{0.0, 1.0} : widened(box.yRange, 0.0);
  const STeskRangeD z = isEmpty ? STeskRangeD{0.0, 1.0} : widened(box.zRange, 0.25);
  return {place,
          {y.min, y.max, "y, along the line [" + unit + "]"},
          {z.max, z.min, "z, distance [" + unit + "]"}};
}

void drawGap(Canvas& canvas,
             const Plot& plot,
             const SQO_basicFeatureGap& gap,
             const std::string& unit) {
  const STesk3DPoint& a = gap.gapStart.pt3D;
  const STesk3DPoint& b = gap.gapEnd.pt3D;
  const cv::Point2d from = plot.at(a.y, a.z);
  const cv::Point2d to = plot.at(b.y, b.z);
  const double top = std::min(from.y, to.y) - 14.0;
  canvas.line({from.x, top}, {to.x, top}, kCentre, 1.5);
  for (const cv::Point2d& rim : {from, to}) {
    canvas.line({rim.x, top - 4.0}, {rim.x, top + 4.0}, kCentre, 1.5);
    drawMarker(canvas, rim, kRims);
  }
  canvas.text(fixed(compute2DLen(a, b), 2) + " " + unit, {0.5 * (from.x + to.x), top - 15.0}, 13.0,
              ink::kText, Anchor::centre);
  drawMarker(canvas, 0.5 * (from + to), kCentre);
}

}  // namespace

int typicalLine(const std::vector<GapTrack>& tracks, std::size_t lines) {
  std::vector<int> counts(lines);
  for (const GapTrack& track : tracks) {
    for (const SQO_basicFeatureGap& gap : track.gaps) {
      ++counts[static_cast<std::size_t>(gap.lineIdx)];
    }
  }
  const int most = *std::max_element(counts.begin(), counts.end());
  std::vector<int> candidates;
  for (std::size_t l = 0; l < lines; ++l) {
    if (counts[l] == most) {
      candidates.push_back(static_cast<int>(l));
    }
  }
  return candidates[candidates.size() / 2];
}

cv::Mat drawMap(const Scan& scan,
                const std::vector<GapTrack>& tracks,
                const SJU_pointCloudPara& cloud,
                int markedLine,
                const std::string& unit) {
  const Scan heights = heightsOf(scan);
  HeightMapView view = viewOf(heights, cloud.scanLineStep, cloud.ptStep);
  view.z = coloursFor(heights);
  const cv::Rect2d place({76.0, 70.0}, mapSize(view.x, view.y, kLargestMap));
  const double right = place.x + place.width;
  Canvas canvas(static_cast<int>(std::max(right + 96.0, 640.0)),
                static_cast<int>(place.y + place.height + 58.0), ink::kPaper);
  const Plot plot(place, {view.x.min, view.x.max, "x, from line to line [" + unit + "]"},
                  {view.y.min, view.y.max, "y, along the lines [" + unit + "]"});
  canvas.paste(paintHeightMap(heights, view, Canvas::innerSize(place)), place.tl());
  markLine(canvas, plot, scan[static_cast<std::size_t>(markedLine)]);
  for (const GapTrack& track : tracks) {
    drawTrack(canvas, plot, track);
  }
  plot.drawAxes(canvas);
  drawTitle(canvas, place.x, "Gaps followed across the scan",
            std::to_string(tracks.size()) + " trees over " + std::to_string(scan.size()) +
                " lines; dashed: line " + std::to_string(markedLine));
  drawLegend(canvas,
             {{Swatch::rimmedLine, kCentre, "centre"},
              {Swatch::rimmedLine, kRims, "rims"},
              {Swatch::rimmedLine, kBridged, "bridged"}},
             {std::max(right, 620.0), 49.0});
  drawColourBar(canvas, {right + 24.0, place.y + 22.0, 16.0, place.height - 22.0}, view.z,
                "height");
  return canvas.finish();
}

cv::Mat drawProfile(const Scan& scan,
                    const std::vector<GapTrack>& tracks,
                    int lineIdx,
                    const std::string& unit) {
  const std::vector<SQO_basicFeatureGap> gaps = gapsOnLine(tracks, lineIdx);
  const Line section = sectionAround(scan[static_cast<std::size_t>(lineIdx)], gaps);
  Canvas canvas(952, 380, ink::kPaper);
  const Plot plot = profilePlot(section, {76.0, 70.0, 852.0, 250.0}, unit);
  plot.drawGrid(canvas);
  drawTrace(canvas, plot, section, kTrace);
  for (const SQO_basicFeatureGap& gap : gaps) {
    drawGap(canvas, plot, gap, unit);
  }
  plot.drawAxes(canvas);
  drawTitle(canvas, 76.0, "Profile of line " + std::to_string(lineIdx),
            std::to_string(gaps.size()) + " gaps, the sensor is above");
  drawLegend(canvas,
             {{Swatch::line, kTrace, "levelled"},
              {Swatch::marker, kRims, "rims"},
              {Swatch::marker, kCentre, "centre"}},
             {928.0, 49.0});
  return canvas.finish();
}

}  // namespace examples
