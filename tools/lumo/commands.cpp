#include "commands.h"

#include "input_error.h"

namespace tool {

void AddCommon(CLI::App& command, CommonOptions& options, Product product, const std::string& drawn) {
  options.product = product;
  command
      .add_option("-o,--output", options.output,
                  drawn + "; - for standard output" +
                      (product == Product::drawing ? ", where it also goes without -o and --json" : ""))
      ->type_name("FILE");
  command.add_flag("--json", options.json, "Print the figures as one JSON object");
  command.add_flag("-v,--verbose", options.verbose, "Say on standard error how long each stage took");
}

void AddDrawing(CLI::App& command, DrawingOptions& options, Product product, const std::string& drawn) {
  command.add_option("DRAWING.svg", options.file, "The drawing; - for standard input")
      ->required()
      ->type_name("FILE");
  AddCommon(command, options, product, drawn);
}

void AddDrawings(CLI::App& command, DrawingsOptions& options, Product product, const std::string& drawn,
                 const std::string& withoutSecond) {
  command.add_option("A.svg", options.first, "The drawing; - for standard input")
      ->required()
      ->type_name("FILE");
  if (!withoutSecond.empty())
    command.add_option("B.svg", options.second, "The other drawing; " + withoutSecond)->type_name("FILE");
  AddCommon(command, options, product, drawn);
}

void Settle(CommonOptions& options) {
  if (options.json && options.output == "-")
    throw InputError("--json and -o - both want standard output; give -o a file, or leave one of them out");
  if (options.output.empty() && !options.json && options.product == Product::drawing) options.output = "-";
}

void Settle(DrawingsOptions& options) {
  if (options.first == "-" && options.second == "-")
    throw InputError("standard input can be only one of the two drawings");
  Settle(static_cast<CommonOptions&>(options));
}

}  // namespace tool
