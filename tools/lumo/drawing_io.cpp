#include "drawing_io.h"

#include "figures.h"
#include "svg_read.h"
#include "svg_write.h"

namespace tool {

Document Read(const CommonOptions& options, const std::string& file) {
  const Stage stage(options, "read " + (file == "-" ? "standard input" : file));
  return ReadSvg(file);
}

void Deliver(const CommonOptions& options, const Document& document, bool showAll) {
  if (!options.output.empty()) {
    const Stage stage(options, "write");
    SaveDocument(document, options.output, showAll);
  }
  DeliverFigures(options, document);
}

void DeliverFigures(const CommonOptions& options, const Document& document, Json extra) {
  if (!options.json) return;
  Json paths = Json::array();
  for (const Element& element : document.elements)
    paths.push_back(JsonFigures(element.id, Measure(document, element.path)));
  Json json = Json::object();
  if (!document.file.empty()) json["file"] = document.file;
  json.update(extra);
  json["paths"] = std::move(paths);
  PrintJson(json);
}

}  // namespace tool
