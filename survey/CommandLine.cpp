#include "survey/CommandLine.h"

#include <random>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "survey/measure/Program.h"
#include "survey/plan/Words.h"

namespace survey {
namespace {

constexpr double kMostSeconds = 86400;
constexpr double kMostMilliseconds = 1000;
constexpr double kLeast = 0.001;

void addRunOptions(CLI::App& app, CellLists& lists, RunCommand& run) {
  Settings& settings = run.settings;
  // Without the range in the help text: it says no more than the sentence on a value out of it.
  const auto upTo = [](double most) { return CLI::Range(kLeast, most).description(""); };
  app.add_option("--methods", lists.methods,
                 "Sorvanta's words, separated by commas, or ten, or all")
      ->type_name("LIST")
      ->capture_default_str();
  app.add_option("--primitives", lists.primitives, "likewise, or all")
      ->type_name("LIST")
      ->capture_default_str();
  app.add_option("--details", lists.details, "grid cells per side, 1 to 2048")
      ->type_name("LIST")
      ->capture_default_str();
  app.add_option(
         "--with", lists.with,
         "attributes as Sorvanta's options ('-n -l0'; '' for none); repeat it for more sets")
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->type_name("'OPTIONS'");
  app.add_option("--seconds", settings.seconds, "the time that it may take")
      ->type_name("S")
      ->check(upTo(kMostSeconds))
      ->capture_default_str();
  app.add_option("--precision", settings.precision,
                 "stop when all ratios are known to so many percent")
      ->type_name("PERCENT")
      ->check(upTo(100))
      ->capture_default_str();
  app.add_option("--frame", settings.frame, "least measured time of a frame in milliseconds")
      ->type_name("MS")
      ->check(upTo(kMostMilliseconds))
      ->capture_default_str();
  app.add_option("--device", settings.device,
                 "a number from the list of devices, or a part of a name")
      ->type_name("DEVICE");
  app.add_flag("--on-screen", settings.onScreen,
               "draw the mesh where it is seen: fills pixels too");
  app.add_option("--seed", settings.seed, "of the order of visits; a random one unless given")
      ->type_name("N");
  app.add_option("--patience", settings.patience,
                 "seconds after which a silent worker counts as hung")
      ->type_name("S")
      ->check(upTo(kMostSeconds))
      ->capture_default_str();
  app.add_option("--json", run.json, "write everything, in Google Benchmark's schema")
      ->type_name("FILE");
  app.add_option("--csv", run.csv, "write a row a cell")->type_name("FILE");
  app.add_option("--markdown", run.markdown, "write the table for a merge request")
      ->type_name("FILE");
  app.add_flag("--quiet", run.quiet, "no progress bar");
  app.add_flag(
      "--unoptimised", run.unoptimised,
      "go on with a build without optimisation, whose figures are those of a slow program");
}

/// All that may stand where that word was not understood: options for an option.
std::vector<std::string> candidatesFor(const std::string& word, const CLI::App& app) {
  std::vector<std::string> words;
  if (word.starts_with('-')) {
    for (const CLI::Option* const option : app.get_options()) {
      words.push_back(option->get_name());
    }
  } else {
    for (const CLI::App* const command :
         app.get_subcommands([](const CLI::App*) { return true; })) {
      words.push_back(command->get_name());
    }
  }
  return words;
}

[[noreturn]] void throwUnusable(const CLI::App& app, const CLI::App& chosen,
                                const CLI::Error& error) {
  const std::vector<std::string> culprits = app.remaining(true);
  const bool misunderstood = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr ||
                             dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
  if (!misunderstood || culprits.empty()) {
    throw Unusable(error.what());
  }
  const std::string& culprit = culprits.front();
  const std::vector<std::string> words = candidatesFor(culprit, chosen);
  if (words.empty()) {
    throw Unusable(fmt::format("'{}' has no meaning here", culprit));
  }
  throwUnknownWord(culprit, culprit.starts_with('-') ? "option" : "command",
                   {words.begin(), words.end()});
}

std::string joined(int argc, const char* const* argv) {
  return fmt::format("{}", fmt::join(argv, argv + argc, " "));
}

}  // namespace

Command parseCommandLine(int argc, const char* const* argv) {
  CLI::App app("Measures how fast an OpenGL driver takes vertices, for many methods in turn.",
               "sorvanta-survey");
  app.set_version_flag("--version", versionLine());
  app.require_subcommand(1);
  app.allow_extras(false);
  CLI::App& runApp = *app.add_subcommand("run", "take a survey and print its table");
  const CLI::App& devicesApp = *app.add_subcommand("devices", "list the devices to draw on");

  RunCommand run;
  CellLists lists;
  lists.with.clear();
  addRunOptions(runApp, lists, run);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return Finished{app.help()};
  } catch (const CLI::CallForAllHelp&) {
    return Finished{app.help("", CLI::AppFormatMode::All)};
  } catch (const CLI::CallForVersion& version) {
    return Finished{version.what() + std::string("\n")};
  } catch (const CLI::Error& error) {
    throwUnusable(app, runApp.parsed() ? runApp : app, error);
  }
  if (devicesApp.parsed()) {
    return DevicesCommand{};
  }
  if (lists.with.empty()) {
    lists.with = {""};
  }
  run.cells = cellsOf(lists);
  run.settings.commandLine = joined(argc, argv);
  if (runApp.get_option("--seed")->empty()) {
    run.settings.seed = std::random_device{}();
  }
  return run;
}

}  // namespace survey
