// Any bytes through the reader of `lumo`: read or refused with a message, then written and read again with
// the same shape.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "input_error.h"
#include "svg_read.h"
#include "svg_write.h"

namespace {

/// An element smaller than the thousandth of a unit that is written is a dot: which of its points coincide is
/// chance.
bool IsDot(const tool::Path& path) {
  constexpr double kResolution = 0.001;
  const auto box = path.GetLooseBBox();
  return box.IsEmpty() || (box.Width() < kResolution && box.Height() < kResolution);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const tool::Document document =
        tool::ReadSvgText(std::string_view(reinterpret_cast<const char*>(data), size), "input");
    tool::SvgWriter writer(document);
    for (const auto& element : document.elements)
      writer.AddPath(element.path, element.presentation, element.id);
    const tool::Document again = tool::ReadSvgText(writer.Text(), "written");
    if (again.elements.size() != document.elements.size()) std::abort();
    for (std::size_t k = 0; k < again.elements.size(); ++k) {
      if (IsDot(document.elements[k].path)) continue;
      if (again.elements[k].path.GetPointCount() != document.elements[k].path.GetPointCount()) std::abort();
    }
  } catch (const tool::InputError&) {
    // refused, with a message
  }
  return 0;
}
