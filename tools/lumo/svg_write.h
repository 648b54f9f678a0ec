#pragma once
// Paths become SVG again, in the user units of the drawing they came from.

#include <string>
#include <string_view>

#include "document.h"

namespace tool {

/// Builds one SVG drawing, element after element, and saves it.
class SvgWriter {
 public:
  /// The drawing's viewBox and units; nothing of its elements.
  explicit SvgWriter(const Document& document);

  /// A path in document units. Its number of decimals is what a thousandth of a document unit needs.
  void AddPath(const Path& path, const Presentation& presentation, std::string_view id = {});
  /// A mark of a size that can be seen in the whole drawing: its radius is a fraction of the drawing's larger
  /// side.
  void AddDot(DPoint center, double fraction, const Presentation& presentation);
  void OpenGroup(const Presentation& presentation);
  void CloseGroup();
  /// Lets the viewBox contain everything added so far and hereafter.
  void ShowAll() { showAll_ = true; }

  std::string Text() const;
  /// To a file, or to standard output when the name is "-". An InputError when it cannot be written.
  void Save(const std::string& file) const;

 private:
  void Open(std::string_view name, const Presentation& presentation);
  std::string Number(double units) const;

  const Document& document_;
  int decimals_;
  TavMath::BoundsT<double> box_;
  bool showAll_ = false;
  std::string body_;
};

/// The d attribute of a path, with this number of decimals, divided by unitsPerUser.
std::string PathData(const Path& path, double unitsPerUser, int decimals);

/// All elements of a document as they are now.
void SaveDocument(const Document& document, const std::string& file, bool showAll = false);

}  // namespace tool
