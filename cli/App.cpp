#include "App.h"

#include <functional>
#include <limits>
#include <memory>

#include <zephra/zephra.h>
#include <CLI/CLI.hpp>

#include "Context.h"
#include "Errors.h"
#include "Printers.h"
#include "Progress.h"
#include "RasterizeCommand.h"
#include "RenderCommand.h"

namespace zephra::cli {

namespace {

// The command that the parser chose, bound to its options.
using TAction = std::function<void(const TContext&)>;

struct TGlobalOptions {
  bool Json = false;
  bool Quiet = false;
  bool Debug = false;
};

template <typename TCommand>
void AddCommand(CLI::App& parent, TAction& action) {
  auto command = std::make_shared<TCommand>();
  CLI::App* app = parent.add_subcommand(TCommand::Name, TCommand::Description);
  app->fallthrough();  // --json, --quiet and --debug may follow the command's own arguments
  app->footer("Global options: --json, -q/--quiet, --debug (see zephra --help)");
  command->Declare(*app);
  app->callback([command, &action] {
    action = [command](const TContext& context) { Print(command->Run(context), context); };
  });
}

CLI::App* AddGroup(CLI::App& parent, const char* name, const char* description) {
  CLI::App* group = parent.add_subcommand(name, description);
  group->require_subcommand(1);
  group->fallthrough();
  return group;
}

void Declare(CLI::App& app, TGlobalOptions& global, TAction& action) {
  app.set_version_flag("--version", LibraryVersionString(), "Print the library's version");
  app.add_flag("--json", global.Json, "Print results as JSON");
  app.add_flag("-q,--quiet", global.Quiet, "No warnings, no progress, no reports of written files");
  app.add_flag("--debug", global.Debug, "Print the library's debug messages on stderr");
  app.require_subcommand(1);
  AddCommand<TInfoCommand>(app, action);
  AddCommand<TSampleCommand>(app, action);
  AddCommand<TConvertCommand>(app, action);
  AddCommand<TRasterizeCommand>(app, action);
  AddCommand<TReclassCommand>(app, action);
  AddCommand<TRenderCommand>(app, action);
  CLI::App* header = AddGroup(app, "header", "Read or edit the fields of a .doc header");
  AddCommand<THeaderGetCommand>(*header, action);
  AddCommand<THeaderSetCommand>(*header, action);
  CLI::App* vector = AddGroup(app, "vector", "Look at vector layers and shapefile polygons");
  AddCommand<TVectorInfoCommand>(*vector, action);
  AddCommand<TVectorPipCommand>(*vector, action);
  AddCommand<TVectorAreaCommand>(*vector, action);
  CLI::App* palette = AddGroup(app, "palette", "Show or blend palette files");
  AddCommand<TPaletteShowCommand>(*palette, action);
  AddCommand<TPaletteBlendCommand>(*palette, action);
}

// The library's debug channel goes to err for the time of one run.
class TDebugChannel {
 public:
  TDebugChannel(bool enabled, std::ostream& err) {
    if (enabled) {
      SetDebugOutput([&err](const std::string& text) { err << "zephra: debug: " << text << '\n'; });
    }
  }
  TDebugChannel(const TDebugChannel&) = delete;
  TDebugChannel& operator=(const TDebugChannel&) = delete;
  ~TDebugChannel() { SetDebugOutput(nullptr); }
};

int ReportUsage(const std::string& message, std::ostream& err) {
  err << "zephra: " << OneLine(message) << " (see zephra --help)\n";
  return 2;
}

int Execute(const TAction& action, const TContext& context) {
  try {
    action(context);
    return 0;
  } catch (const TUsageError& error) {
    context.Progress.Clear();
    return ReportUsage(error.what(), context.Err);
  } catch (const std::exception& error) {
    context.Progress.Clear();
    context.Err << "zephra: " << OneLine(error.what()) << '\n';
    return 1;
  }
}

}  // namespace

int RunZephra(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
              bool errIsTerminal) {
  // The tool has no screen to fit: windows and whole opens read every cell.
  SetScreenWidth(std::numeric_limits<int32_t>::max());
  CLI::App app(
      "Look at, convert, reclassify, burn and render the rasters, vectors and palettes "
      "of the Zephra family.",
      "zephra");
  TGlobalOptions global;
  TAction action;
  Declare(app, global, action);
  try {
    app.parse(std::vector<std::string>(args.rbegin(), args.rend()));  // CLI11 takes them reversed
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {  // --help, --version
      return app.exit(error, out, err);
    }
    return ReportUsage(error.what(), err);
  }
  const TDebugChannel debug(global.Debug, err);
  TProgress progress(err, errIsTerminal && !global.Quiet);
  const TContext context{out, err, global.Quiet, global.Json ? TFormat::Json : TFormat::Text,
                         progress};
  return Execute(action, context);
}

}  // namespace zephra::cli
