#include "survey/CommandLine.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <random>
#include <set>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include "survey/Program.h"
#include "survey/data/Words.h"
#include "survey/judge/Advice.h"

namespace survey {
namespace {

constexpr double kMostSeconds = 86400;
constexpr double kMostMilliseconds = 1000;
constexpr double kLeast = 0.001;
constexpr double kMostPrecision = 100;
constexpr double kMostThreshold = 90;

void addFile(CLI::App& app, const char* option, std::string& path, const char* help) {
  const CLI::Validator named(
      [](const std::string& text) { return text.empty() ? "a file needs a name" : ""; }, "");
  app.add_option(option, path, help)->type_name("FILE")->check(named);
}

void addOutputs(CLI::App& app, Outputs& outputs) {
  addFile(app, "--json", outputs.json, "write everything, in Google Benchmark's schema");
  addFile(app, "--markdown", outputs.markdown, "write the table for a merge request");
  addFile(app, "--junit", outputs.junit, "write a test case a cell, for a CI's page of tests");
}

/// Its sentences name the value and what it may be.
CLI::Validator upTo(double most) {
  return {[=](const std::string& text) -> std::string {
            char* end = nullptr;
            const double number = std::strtod(text.c_str(), &end);
            if (end != text.c_str() + text.size() || text.empty() || std::isnan(number)) {
              return fmt::format("'{}' is no number", text);
            }
            return number < kLeast || number > most
                       ? fmt::format("{} is not between {:g} and {:g}", text, kLeast, most)
                       : "";
          },
          ""};
}

void addLine(CLI::App& app, Outputs& outputs) {
  app.add_flag("--line", outputs.line, "print a line a change, for a commit message");
}

void addThreshold(CLI::App& app, double& threshold) {
  app.add_option("--threshold", threshold, "a change that is not larger does not matter")
      ->type_name("PERCENT")
      ->check(upTo(kMostThreshold))
      ->capture_default_str();
}

void addLists(CLI::App& app, CellLists& lists) {
  app.add_option("--methods", lists.methods,
                 "Sorvanta's words, separated by commas, or ten, today, static, stream, core, all")
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
}

void addSittingOptions(CLI::App& app, SittingCommand& command) {
  Settings& settings = command.plan.settings;
  app.add_option("--seconds", settings.seconds, "the time that it may take")
      ->type_name("S")
      ->check(upTo(kMostSeconds))
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
      ->type_name("N")
      ->check(CLI::Validator(
          [](const std::string& text) {
            const bool digits = !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
              return c >= '0' && c <= '9';
            });
            return digits ? "" : fmt::format("'{}' is no whole number", text);
          },
          ""));
  app.add_option("--patience", settings.patience,
                 "seconds after which a silent worker counts as hung")
      ->type_name("S")
      ->check(upTo(kMostSeconds))
      ->capture_default_str();
  addOutputs(app, command.outputs);
  app.add_flag("--quiet", command.quiet, "no progress bar");
  app.add_flag(
      "--unoptimised", command.unoptimised,
      "go on with a build without optimisation, whose figures are those of a slow program");
}

void addAdviseOptions(CLI::App& app, Question& question, CellLists& lists) {
  constexpr double kMostTriangles = 1e9;
  app.add_option("--triangles", question.triangles, "how many the mesh has")
      ->type_name("N")
      ->check(upTo(kMostTriangles))
      ->required();
  app.add_option("--strips", question.strips, "in how many strips they are")
      ->type_name("S")
      ->check(upTo(kMostTriangles))
      ->capture_default_str();
  app.add_option_function<std::string>(
         "--changes", [&](const std::string& when) { question.changes = when != "never"; },
         "how often its vertices change")
      ->type_name("never|every-frame")
      ->check(CLI::IsMember({"never", "every-frame"}))
      ->default_str("never");
  app.add_flag("--core", question.core, "only what a core profile lets a program do");
  app.add_option("--with", lists.with, "its attributes as Sorvanta's options ('-n -t0')")
      ->expected(1)
      ->type_name("'OPTIONS'");
}

void addRunOptions(CLI::App& app, SittingCommand& run) {
  app.add_option("--precision", run.plan.settings.precision,
                 "stop when all ratios are known to so many percent")
      ->type_name("PERCENT")
      ->check(upTo(kMostPrecision))
      ->capture_default_str();
  addFile(app, "--csv", run.outputs.csv, "write a row a cell");
}

/// The sides as they are given, which are understood when all is parsed.
struct Sides {
  std::string base;
  std::vector<std::string> newer;
  std::string baseName = "base";
  std::vector<std::string> newNames;
  std::vector<std::string> explain;
};

void addVersusOptions(CLI::App& app, SittingCommand& versus, Sides& sides) {
  constexpr const char* kVariables = "'VAR=value ...'";
  app.add_option("--base", sides.base, "environment of one side; '' for the one that is there")
      ->type_name(kVariables)
      ->required();
  const auto addNew = [&](const char* option, std::vector<std::string>& values, const char* help) {
    return app.add_option(option, values, help)
        ->expected(1)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  };
  addNew("--new", sides.newer, "environment of a side that is judged; repeat it for more sides")
      ->type_name(kVariables)
      ->required();
  app.add_option("--base-name", sides.baseName, "what it is called")
      ->type_name("NAME")
      ->capture_default_str();
  addNew("--new-name", sides.newNames, "what it is called, in the order of --new [new]")
      ->type_name("NAME");
  addThreshold(app, versus.threshold);
  addLine(app, versus.outputs);
  app.add_option(
         "--explain", sides.explain,
         "which functions make a change; of the cells that changed most unless some are named")
      ->type_name("[CELL,...]")
      ->delimiter(',')
      ->expected(0, CLI::detail::expected_max_vector_size);
}

void addCompareOptions(CLI::App& app, CompareCommand& compare) {
  app.add_option("OLD.json", compare.base,
                 "files that run or versus wrote, of several sittings of the old driver")
      ->type_name("")
      ->required();
  app.add_option("--new", compare.newer,
                 "as many of the new one; of two files without it the second is new")
      ->type_name("NEW.json");
  addThreshold(app, compare.threshold);
  addLine(app, compare.outputs);
  addOutputs(app, compare.outputs);
}

void addReportOptions(CLI::App& app, ReportCommand& report) {
  app.add_option("FILE.json", report.files, "files that run, versus or compare wrote")
      ->type_name("")
      ->required();
  addFile(app, "--html", report.html, "the page to write");
  app.get_option("--html")->required();
}

/// What all sittings have in common, once parsed.
void settle(SittingCommand& command, CellLists lists, const CLI::App& app,
            const std::string& commandLine) {
  if (lists.with.empty()) {
    lists.with = {""};
  }
  command.plan.cells = cellsOf(lists);
  command.plan.settings.commandLine = commandLine;
  if (app.get_option("--seed")->empty()) {
    command.plan.settings.seed = std::random_device{}();
  }
}

/// "new" for one, "new1", "new2" and so on for several.
std::vector<std::string> defaultNames(std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t i = 1; i <= count; ++i) {
    names.push_back(count == 1 ? "new" : fmt::format("new{}", i));
  }
  return names;
}

std::vector<Side> sidesOf(const Sides& given) {
  std::vector<Side> sides{{given.baseName, assignmentsIn(given.base, "--base")}};
  const std::size_t count = given.newer.size();
  const std::vector<std::string> names =
      given.newNames.empty() ? defaultNames(count) : given.newNames;
  if (names.size() != count) {
    throw Unusable("--new-name must be given as often as --new, or not at all");
  }
  for (std::size_t i = 0; i < count; ++i) {
    sides.push_back({names[i], assignmentsIn(given.newer[i], "--new")});
  }
  std::set<std::string> different{""};
  for (const Side& side : sides) {
    if (!different.insert(side.name).second) {
      throw Unusable("--base-name and --new-name must be names that differ");
    }
  }
  return sides;
}

/// Throws Unusable for a name that none of the cells has.
std::vector<std::string> cellsNamed(const std::vector<std::string>& names,
                                    const std::vector<Cell>& cells) {
  std::vector<std::string> all;
  std::transform(cells.begin(), cells.end(), std::back_inserter(all), nameOf);
  for (const std::string& name : names) {
    if (std::find(all.begin(), all.end(), name) == all.end()) {
      throwUnknownWord(name, "cell", {all.begin(), all.end()});
    }
  }
  return names;
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

/// As a shell takes it.
std::string quoted(std::string word) {
  constexpr const char* kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=.,:/@%";
  if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) {
    return word;
  }
  for (std::size_t place = 0; (place = word.find('\'', place)) != std::string::npos; place += 4) {
    word.replace(place, 1, "'\\''");
  }
  return '\'' + word + '\'';
}

std::string joined(int argc, const char* const* argv) {
  std::vector<std::string> words;
  std::transform(argv, argv + argc, std::back_inserter(words), quoted);
  return fmt::format("{}", fmt::join(words, " "));
}

}  // namespace

Command parseCommandLine(int argc, const char* const* argv) {
  CLI::App app("Measures how fast an OpenGL driver takes vertices, for many methods in turn.",
               "sorvanta-survey");
  app.set_version_flag("--version", versionLine());
  app.require_subcommand(1);
  app.allow_extras(false);
  const CLI::App& devicesApp = *app.add_subcommand("devices", "list the devices to draw on");
  CLI::App& runApp = *app.add_subcommand("run", "take a survey and print its table");
  CLI::App& adviseApp = *app.add_subcommand("advise", "which method suits a mesh of that size?");
  CLI::App& versusApp =
      *app.add_subcommand("versus", "let environments take turns: is one slower?");
  CLI::App& compareApp = *app.add_subcommand("compare", "hold two files against each other");
  CLI::App& reportApp = *app.add_subcommand("report", "make a page to look at of files");

  CellLists lists;
  lists.with.clear();
  SittingCommand run;
  addLists(runApp, lists);
  addSittingOptions(runApp, run);
  addRunOptions(runApp, run);
  SittingCommand advise;
  Question question;
  addAdviseOptions(adviseApp, question, lists);
  addSittingOptions(adviseApp, advise);
  SittingCommand versus;
  versus.threshold = kDefaultThreshold;
  versus.plan.settings.frame = kFrameInTurns;
  Sides sides;
  addLists(versusApp, lists);
  addSittingOptions(versusApp, versus);
  addVersusOptions(versusApp, versus, sides);
  CompareCommand compare;
  addCompareOptions(compareApp, compare);
  ReportCommand report;
  addReportOptions(reportApp, report);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    return Finished{app.help()};
  } catch (const CLI::CallForAllHelp&) {
    return Finished{app.help("", CLI::AppFormatMode::All)};
  } catch (const CLI::CallForVersion& version) {
    return Finished{version.what() + std::string("\n")};
  } catch (const CLI::Error& error) {
    const auto parsed = app.get_subcommands();
    throwUnusable(app, parsed.empty() ? app : *parsed.front(), error);
  }
  if (devicesApp.parsed()) {
    return DevicesCommand{};
  }
  if (compareApp.parsed()) {
    if (compare.newer.empty() && compare.base.size() == 2) {
      compare.newer = {compare.base.back()};
      compare.base.pop_back();
    }
    if (compare.newer.empty()) {
      throw Unusable("there is nothing to compare with: name the new driver's files after --new");
    }
    return compare;
  }
  if (reportApp.parsed()) {
    return report;
  }
  const std::string commandLine = joined(argc, argv);
  if (versusApp.parsed()) {
    settle(versus, lists, versusApp, commandLine);
    versus.plan.sides = sidesOf(sides);
    if (!versusApp.get_option("--explain")->empty()) {
      std::erase(sides.explain, "");  // given without names
      versus.explain = cellsNamed(sides.explain, versus.plan.cells);
    }
    return versus;
  }
  if (adviseApp.parsed()) {
    if (question.strips > question.triangles) {
      throw Unusable("there cannot be more strips than triangles");
    }
    lists.methods = fmt::format("{}", fmt::join(methodsFor(question), ","));
    lists.details = fmt::format("{}", fmt::join(detailsFor(question), ","));
    settle(advise, lists, adviseApp, commandLine);
    advise.question = question;
    advise.plan.sides = {{"", {}}};
    return advise;
  }
  settle(run, lists, runApp, commandLine);
  run.plan.sides = {{"", {}}};
  return run;
}

}  // namespace survey
