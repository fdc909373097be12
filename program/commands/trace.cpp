#include "roads/trace.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <utility>

#include "base/failure.h"
#include "base/number.h"
#include "commands/commands.h"
#include "commands/session.h"
#include "draw/map_picture.h"
#include "output/ply_file.h"
#include "plane/plane_report.h"
#include "roads/feature_types.h"

namespace program {
namespace {

struct Trace {
  explicit Trace(CLI::App& app) : command(app), parameters(app, "Method") {}

  CLI::App& command;
  Parameters parameters;
  CommonOptions common;
  InputOptions input;
  PlaneOptions plane;
  Edges edges = Edges::upper;
  bool both = false;
  bool silhouettes = false;
};

Table treeTable(const std::vector<TracedTree>& trees,
                const PlaneChoice& plane,
                const std::string& unit) {
  Table table = {"trees",
                 "Trees, the longest first",
                 {{"id", ""},
                  {"type", ""},
                  {"along", ""},
                  {"nodes", ""},
                  {"first line", ""},
                  {"last line", ""},
                  {"length", unit, 2},
                  {"dx", ""},
                  {"dy", ""},
                  {"dz", ""},
                  {"rms", unit}},
                 {}};
  for (const TracedTree& tree : trees) {
    const auto [first, last] =
        std::minmax(tree.nodes.front().jumpPos2D.x, tree.nodes.back().jumpPos2D.x);
    table.rows.push_back({static_cast<long long>(table.rows.size() + 1), nameOfType(tree.type),
                          std::string(tree.isAlongLines ? "lines" : "scan"),
                          static_cast<long long>(tree.nodes.size()), static_cast<long long>(first),
                          static_cast<long long>(last), tree.length, tree.direction.x,
                          tree.direction.y, plane.shownStep(tree.direction.z), tree.rms});
  }
  return table;
}

Table nodeTable(const std::vector<TracedTree>& trees, const PlaneChoice& plane) {
  Table table = {
      "nodes",
      "",
      {{"tree", ""}, {"line", ""}, {"sample", ""}, {"x", ""}, {"y", ""}, {"z", ""}, {"type", ""}},
      {}};
  long long id = 0;
  for (const TracedTree& tree : trees) {
    ++id;
    for (const SQO_basicFeature1D& node : tree.nodes) {
      table.rows.push_back({id, static_cast<long long>(node.jumpPos2D.x),
                            static_cast<long long>(node.jumpPos2D.y), node.jumpPos.x,
                            node.jumpPos.y, plane.shown(node.jumpPos.z),
                            nameOfType(node.featureType)});
    }
  }
  return table;
}

Picture pictureOf(const Trace& trace,
                  const PreparedScan& scan,
                  const std::vector<TracedTree>& trees) {
  constexpr std::size_t kMostLabels = 40;
  MapContent content;
  content.title = "Edges of " + trace.input.path.substr(trace.input.path.find_last_of('/') + 1);
  content.subtitle =
      counted(trees.size(), "tree") + " over " + counted(scan.loaded.scan.size(), "line");
  content.unit = trace.input.unit;
  content.colours = trace.common.colours;
  std::vector<int> types;
  for (auto tree = trees.rbegin(); tree != trees.rend(); ++tree) {
    MapPath path = {{}, colourOfType(tree->type)};
    for (const SQO_basicFeature1D& node : tree->nodes) {
      path.points.emplace_back(node.jumpPos.x, node.jumpPos.y);
    }
    content.paths.push_back(std::move(path));
    if (std::find(types.begin(), types.end(), tree->type) == types.end()) {
      types.push_back(tree->type);
    }
  }
  for (std::size_t i = 0; i < std::min(trees.size(), kMostLabels); ++i) {
    const STesk3DPoint& middle = trees[i].nodes[trees[i].nodes.size() / 2].jumpPos;
    content.labels.push_back({std::to_string(i + 1), {middle.x, middle.y}});
  }
  std::sort(types.begin(), types.end());
  for (const int type : types) {
    content.legend.push_back({Swatch::line, colourOfType(type), nameOfType(type)});
  }
  return mapPicture(scan.loaded.scan, scan.extent, scan.plane, std::move(content));
}

bool writeTreesAsPly(const std::string& path,
                     const Scan& scan,
                     const std::vector<TracedTree>& trees) {
  std::vector<PlyPath> paths;
  for (const TracedTree& tree : trees) {
    PlyPath one = {{}, colourOfType(tree.type)};
    for (const SQO_basicFeature1D& node : tree.nodes) {
      one.points.push_back(node.jumpPos);
    }
    paths.push_back(std::move(one));
  }
  return writePly(path, scan, paths);
}

std::vector<TracedTree> findTrees(const Trace& trace, const Scan& scan, const TraceParams& params) {
  Progress progress("Tracing", static_cast<long long>(scan.size()), trace.common.quiet);
  std::vector<TracedTree> trees = traceEdges(scan, params, progress);
  if (trace.both) {
    const auto samples = static_cast<long long>(scan.front().size());
    Progress again("Tracing along the lines", samples, trace.common.quiet);
    std::vector<TracedTree> along = traceAlongLines(scan, params, again);
    std::move(along.begin(), along.end(), std::back_inserter(trees));
    std::stable_sort(trees.begin(), trees.end(),
                     [](const TracedTree& a, const TracedTree& b) { return a.length > b.length; });
  }
  return trees;
}

void run(Trace& trace) {
  Session session(trace.command, trace.common, trace.parameters);
  const PreparedScan scan = session.prepare(trace.input, trace.plane);
  TraceParams params = traceParams(trace.parameters, scan.extent);
  params.edges = trace.edges;
  params.silhouettes = trace.silhouettes;
  if (session.printsConfig()) {
    return;
  }
  const std::vector<TracedTree> trees = findTrees(trace, scan.loaded.scan, params);
  Report report;
  report.command = "trace";
  report.csvTable = "nodes";
  report.fields = {inputField(trace.input, scan.loaded, scan.raw),
                   axesField(trace.input, scan.plane), planeField(scan.plane)};
  report.lines = describe(trace.input, scan);
  report.tables = {treeTable(trees, scan.plane, trace.input.unit), nodeTable(trees, scan.plane)};
  if (!trace.common.ply.empty()) {
    session.files.add(trace.common.ply, [&](const std::string& path) {
      return writeTreesAsPly(path, scan.loaded.scan, trees);
    });
  }
  session.saveScan(scan.loaded.scan, scan.extent);
  session.finish(report, pictureOf(trace, scan, trees));
  if (trees.empty()) {
    throw Failure(ExitCode::nothingFound,
                  trace.input.path +
                      ": no edge could be traced. Try a smaller --corner-angle, "
                      "--corner-scale or --tree-length");
  }
}

}  // namespace

void addTrace(CLI::App& program, Body& body) {
  CLI::App* command =
      program.add_subcommand("trace", "Trace edges across a scan, as trees of corners");
  command->footer("Example: scanline trace scan.tiff --picture edges.png --json edges.json");
  const auto trace = std::make_shared<Trace>(*command);
  addInputOptions(*command, trace->input);
  addPlaneOptions(*command, trace->plane);
  addTraceParameters(trace->parameters);
  command
      ->add_option_function<std::string>(
          "--edges",
          [trace](const std::string& kind) {
            trace->edges = kind == "lower" ? Edges::lower : Edges::upper;
          },
          "Trace upper edges, or lower: feet and grooves (default: upper)")
      ->check(CLI::IsMember({"upper", "lower"}).description(""))
      ->type_name("KIND")
      ->group("Method");
  command->add_flag("--both", trace->both, "Also trace edges that run along the lines")
      ->group("Method");
  command->add_flag("--silhouettes", trace->silhouettes, "Also trace the ends of the segments")
      ->group("Method");
  addColourOption(*command, trace->common);
  addCommonOptions(*command, trace->common,
                   {"nodes of the trees", "the scan with the trees over it",
                    "the map with the trees", "the levelled scan"});
  command->final_callback([trace, &body] { body = [trace] { run(*trace); }; });
}

}  // namespace program
