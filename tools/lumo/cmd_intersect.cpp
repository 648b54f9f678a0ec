// lumo intersect: where the paths of one or two drawings meet.

#include <algorithm>
#include <deque>

#include "drawing_io.h"
#include "lumo/intersections.h"
#include "svg_write.h"

namespace tool {

namespace {

struct Options : DrawingsOptions {
  bool self = false;
};

/// One place on one path.
struct Place {
  const Element* element;
  int firstNode;
  int lastNode;
  double t;
};
struct Meeting {
  const char* kind;
  Place a, b;
  DPoint point;
  /// The other end of a shared stretch; the point again when it is not one.
  DPoint end;
};

/// The two drawings in one table; the second is brought to the units of the first.
class Meetings {
 public:
  Meetings(const Document& first, const Document* second, bool self) : self_(self) {
    Add(first, 1, 0);
    if (second) Add(*second, first.unitsPerUser / second->unitsPerUser, 1);
    both_ = second != nullptr;
  }

  std::vector<Meeting> Find() {
    Lumo::FindAllIntersections(table_, Lumo::SegmentIntersectionSettings());
    std::vector<Meeting> list;
    for (const auto& segment : table_.Segments()) {
      for (const Lumo::Intersection* record : segment.Intersections()) Report(record, list);
    }
    return list;
  }

 private:
  void Add(const Document& document, double scale, int drawing) {
    for (const Element& element : document.elements) {
      paths_.push_back(element.path);
      Path& path = paths_.back();
      const auto nodes = path.GetBuffer();
      for (std::size_t i = 0; scale != 1 && i < nodes.count; ++i) nodes.points[i] *= scale;
      path.ReleaseBuffer();
      sources_.push_back({&element, drawing});
      table_.AddCurve(path.GetPoints(), path.GetNodeTypes(), static_cast<int>(path.GetPointCount()), true,
                      self_);
    }
  }

  Place PlaceOf(const Lumo::Intersection& record) const {
    const auto& segment = table_.Segments()[static_cast<std::size_t>(record.SegmentID())];
    return {sources_[static_cast<std::size_t>(segment.GetCurveID())].element, segment.SegmentStart(),
            segment.SegmentEnd(), record.GetIntersectionTime()};
  }

  int CurveOf(const Lumo::Intersection& record) const {
    return table_.Segments()[static_cast<std::size_t>(record.SegmentID())].GetCurveID();
  }

  /// Each meeting stands in the table twice, a shared stretch four times: one of them is reported.
  void Report(const Lumo::Intersection* record, std::vector<Meeting>& list) const {
    const Lumo::Intersection* partner = record->GetPartner();
    if (!partner) return;
    const auto order = [](const Lumo::Intersection& r) {
      return std::pair(r.SegmentID(), r.GetIntersectionTime());
    };
    if (order(*partner) < order(*record)) return;
    const int a = CurveOf(*record), b = CurveOf(*partner);
    const bool acrossDrawings =
        sources_[static_cast<std::size_t>(a)].drawing != sources_[static_cast<std::size_t>(b)].drawing;
    if (both_ && !self_ && !acrossDrawings) return;
    const Lumo::Intersection* other = record->GetOverlapPartner();
    if (other && order(*other) < order(*record)) return;
    list.push_back({other               ? "overlap"
                    : record->IsTouch() ? "touch"
                                        : "crossing",
                    PlaceOf(*record), PlaceOf(*partner), record->GetIntersection(),
                    other ? other->GetIntersection() : record->GetIntersection()});
  }

  struct Source {
    const Element* element;
    int drawing;
  };
  Lumo::SegmentIntersectionTable table_;
  /// A deque, because the table points into the paths.
  std::deque<Path> paths_;
  std::vector<Source> sources_;
  bool self_;
  bool both_ = false;
};

Json JsonPlace(const Place& place) {
  return {{"id", place.element->id},
          {"firstNode", place.firstNode},
          {"lastNode", place.lastNode},
          {"t", place.t}};
}

void PrintAsJson(const Document& document, const std::vector<Meeting>& list) {
  Json entries = Json::array();
  for (const Meeting& meeting : list) {
    Json entry = {{"kind", meeting.kind},
                  {"point", JsonPoint(document, meeting.point)},
                  {"a", JsonPlace(meeting.a)},
                  {"b", JsonPlace(meeting.b)}};
    if (meeting.kind == std::string_view("overlap")) entry["end"] = JsonPoint(document, meeting.end);
    entries.push_back(std::move(entry));
  }
  PrintJson({{"file", document.file}, {"intersections", std::move(entries)}});
}

void PrintAsTable(const Document& document, const std::vector<Meeting>& list) {
  Table table({"meeting", "x", "y", "a", "segment", "t", "b", "segment", "t"});
  const auto segment = [](const Place& place) {
    return std::to_string(place.firstNode) + "-" + std::to_string(place.lastNode);
  };
  for (const Meeting& m : list) {
    const DPoint p = document.ToUser(m.point);
    table.Add({m.kind, Figure(p.x), Figure(p.y), m.a.element->id, segment(m.a), Figure(m.a.t),
               m.b.element->id, segment(m.b), Figure(m.b.t)});
  }
  table.Print();
}

void Mark(const Document& first, const Document* second, const std::vector<Meeting>& list,
          const std::string& output) {
  constexpr double kDot = 0.006;
  SvgWriter writer(first);
  writer.OpenGroup({{"fill", "none"}, {"stroke", "#777"}, {"stroke-width", "0.3%"}});
  for (const Element& element : first.elements) writer.AddPath(element.path, {}, element.id);
  writer.CloseGroup();
  if (second) {
    writer.OpenGroup({{"fill", "none"}, {"stroke", "#2471a3"}, {"stroke-width", "0.3%"}});
    const double scale = first.unitsPerUser / second->unitsPerUser;
    for (const Element& element : second->elements) {
      Path path = element.path;
      const auto nodes = path.GetBuffer();
      for (std::size_t i = 0; i < nodes.count; ++i) nodes.points[i] *= scale;
      path.ReleaseBuffer();
      writer.AddPath(path, {}, element.id);
    }
    writer.CloseGroup();
  }
  for (const Meeting& meeting : list) {
    const std::string_view kind = meeting.kind;
    const char* colour = kind == "crossing" ? "#c0392b" : kind == "touch" ? "#27ae60" : "#8e44ad";
    writer.AddDot(meeting.point, kDot, {{"fill", colour}});
    if (kind == "overlap") writer.AddDot(meeting.end, kDot, {{"fill", colour}});
  }
  writer.Save(output);
}

int Run(const Options& options) {
  const Document first = Read(options, options.first);
  Document other;
  if (!options.second.empty()) other = Read(options, options.second);
  const Document* second = options.second.empty() ? nullptr : &other;
  const std::vector<Meeting> list = [&] {
    const Stage stage(options, "intersect");
    return Meetings(first, second, options.self).Find();
  }();
  if (!options.output.empty()) Mark(first, second, list, options.output);
  if (options.json) PrintAsJson(first, list);
  if (options.PrintsTable()) PrintAsTable(first, list);
  return list.empty() ? kNothing : kDone;
}

}  // namespace

void AddIntersect(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("intersect", "Crossings, touches and shared stretches of paths");
  const auto options = std::make_shared<Options>();
  AddDrawings(*command, *options, Product::figures, "The drawing with the meetings marked",
              "with it, only meetings of one with the other count");
  command->add_flag("--self", options->self, "Also where a path meets itself, and within each drawing");
  command->footer(
      "Crossings are marked red, touches green, the ends of shared stretches violet. Exit code 1 when "
      "nothing meets.\n"
      "Example: lumo intersect drawing.svg --self -o marked.svg");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
