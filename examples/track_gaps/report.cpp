#include "report.h"

#include <cmath>
#include <cstdio>

#include "text_table.h"

namespace examples {
namespace {

constexpr std::size_t kMostTracks = 20;

void addColumns(TextTable& table, const std::vector<std::string>& headers) {
  for (const std::string& header : headers) {
    table.addColumn(header, Align::right);
  }
}

std::string lineRange(int first, int last) {
  return std::to_string(first) + " - " + std::to_string(last);
}

std::string deviationText(const Deviation& deviation) {
  return fixed(deviation.rms, 3) + " / " + fixed(deviation.max, 3);
}

const Deviation& bestDeviation(const GapTrack& track) {
  return isBent(track) ? track.parabola->deviation : track.line.deviation;
}

std::string trackName(std::size_t index, const GapTrack& track) {
  const std::string number = std::to_string(index + 1);
  return track.truth ? number + " " + track.truth->name : number;
}

void printHead(const LineGaps& gaps, const ReportHead& head, std::size_t tracked) {
  std::size_t found = 0;
  for (const std::vector<SQO_basicFeatureGap>& line : gaps) {
    found += line.size();
  }
  const char* unit = head.unit.c_str();
  std::printf("Scan: %s\n", head.source.c_str());
  std::printf("  %zu lines, %s samples, %s %s between lines, %s %s between samples\n", head.lines,
              grouped(head.samples).c_str(), significant(head.cloud.scanLineStep, 4).c_str(), unit,
              significant(head.cloud.ptStep, 4).c_str(), unit);
  if (head.levelledBy > 0.0) {
    std::printf("  levelled by %s deg\n", fixed(head.levelledBy, 2).c_str());
  } else {
    std::printf("  not levelled\n");
  }
  std::printf("  %zu gaps on the lines, %zu of them in trees\n", found, tracked);
}

std::vector<std::string> trackRow(std::size_t index, const GapTrack& track) {
  const int first = track.gaps.front().lineIdx;
  const int last = track.gaps.back().lineIdx;
  const std::string share =
      fixed(100.0 * static_cast<double>(track.gaps.size()) / (last - first + 1), 1) + " %";
  return {trackName(index, track),
          lineRange(first, last),
          share,
          significant(track.length, 4),
          fixed(track.meanWidth, 3),
          fixed(track.width.min, 2) + " - " + fixed(track.width.max, 2),
          track.truth ? fixed(track.truth->width, 2) : "-",
          isBent(track) ? "parabola" : "line",
          deviationText(bestDeviation(track)),
          track.truth ? deviationText(track.truth->deviation) : "-"};
}

void printTracks(const std::vector<GapTrack>& tracks, const std::string& unit) {
  std::printf(
      "\nTrees of gaps, longest first (lengths in %s, deviations of the centre as rms / "
      "largest)\n",
      unit.c_str());
  if (tracks.empty()) {
    std::printf(
        "  none; try other --width-min and --width-max, or a smaller --rim-angle or "
        "--min-length\n");
    return;
  }
  TextTable table;
  table.addColumn("#", Align::left);
  addColumns(table, {"lines", "seen on", "length", "mean width", "widths", "true width", "fit",
                     "off the fit", "off the truth"});
  for (std::size_t i = 0; i < tracks.size() && i < kMostTracks; ++i) {
    table.addRow(trackRow(i, tracks[i]));
  }
  table.print();
  if (tracks.size() > kMostTracks) {
    std::printf("  ... and %zu more\n", tracks.size() - kMostTracks);
  }
}

std::string lineText(const LineFit& line) {
  const auto point = [](const STesk3DPoint& p, int decimals) {
    return "(" + fixed(p.x, decimals) + ", " + fixed(p.y, decimals) + ", " + fixed(p.z, decimals) +
           ")";
  };
  return "line through " + point(line.centre, 2) + " along " + point(line.direction, 4);
}

std::string parabolaText(const ParabolaFit& fit) {
  const auto term = [](double factor, const char* what) {
    return (factor < 0.0 ? " - " : " + ") + significant(std::abs(factor), 4) + what;
  };
  return "y = " + fixed(fit.c, 3) + term(fit.b, " x") + term(fit.a, " x^2") +
         ", radius at the apex " + significant(0.5 / std::abs(fit.a), 4);
}

/// How many lines were missed, and the first interruptions that are more than a few lines.
std::string interruptionText(const GapTrack& track, const std::string& unit) {
  constexpr int kMostTold = 6;
  int missed = 0;
  int longOnes = 0;
  std::string text;
  for (const Interruption& gap : track.interruptions) {
    const int lines = gap.lastLine - gap.firstLine + 1;
    missed += lines;
    if (lines > kFewLines && ++longOnes <= kMostTold) {
      text += "; " + fixed(gap.length, 1) + " " + unit + " on lines " +
              lineRange(gap.firstLine, gap.lastLine);
    }
  }
  if (longOnes > kMostTold) {
    text += "; ...";
  }
  return std::to_string(missed) + " lines missed, " + std::to_string(longOnes) + " interruptions" +
         text;
}

void printFits(const std::vector<GapTrack>& tracks, const std::string& unit) {
  std::printf("\nCentre lines\n");
  for (std::size_t i = 0; i < tracks.size() && i < kMostTracks; ++i) {
    const GapTrack& track = tracks[i];
    std::printf("  %s: %s\n     %s\n", trackName(i, track).c_str(),
                (isBent(track) ? parabolaText(*track.parabola) : lineText(track.line)).c_str(),
                interruptionText(track, unit).c_str());
  }
}

}  // namespace

void printReport(const std::vector<GapTrack>& tracks,
                 const LineGaps& gaps,
                 const ReportHead& head) {
  std::size_t tracked = 0;
  for (const GapTrack& track : tracks) {
    tracked += track.gaps.size();
  }
  printHead(gaps, head, tracked);
  printTracks(tracks, head.unit);
  if (!tracks.empty()) {
    printFits(tracks, head.unit);
  }
}

void printTimes(const std::vector<StepTime>& times, const ReportHead& head) {
  std::printf("\nTime\n");
  TextTable table;
  table.addColumn("step", Align::left);
  addColumns(table, {"ms", "us per line", "ns per sample"});
  for (const StepTime& step : times) {
    table.addRow({step.name, fixed(1e3 * step.seconds, 2),
                  fixed(1e6 * step.seconds / static_cast<double>(head.lines), 2),
                  fixed(1e9 * step.seconds / static_cast<double>(head.samples), 2)});
  }
  table.print();
}

}  // namespace examples
