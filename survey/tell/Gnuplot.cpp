#include "survey/tell/Gnuplot.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <regex>

#include <fmt/format.h>
#include <unistd.h>

#include "survey/tell/Html.h"

namespace survey {
namespace {

class ScriptFile {
 public:
  explicit ScriptFile(const std::string& script) {
    const int file = mkstemp(path_.data());
    if (file < 0) {
      throw CannotPlot("no file for gnuplot can be made in /tmp");
    }
    close(file);
    std::ofstream(path_) << script;
  }
  ScriptFile(const ScriptFile&) = delete;
  ScriptFile& operator=(const ScriptFile&) = delete;
  ~ScriptFile() { unlink(path_.c_str()); }
  const std::string& path() const { return path_; }

 private:
  std::string path_ = "/tmp/sorvanta-chart-XXXXXX";
};

std::string outputOf(const std::string& script) {
  const ScriptFile file(script);
  // Without the user's own settings for gnuplot; numbers with a point whatever the language.
  FILE* const pipe = popen(("LC_ALL=C gnuplot -d " + file.path() + " 2>&1").c_str(), "re");
  std::string output;
  if (pipe != nullptr) {
    for (int character = fgetc(pipe); character != EOF; character = fgetc(pipe)) {
      output += static_cast<char>(character);
    }
  }
  constexpr int kNotFound = 127;
  const int status = pipe != nullptr ? pclose(pipe) : -1;
  if (status != 0) {
    throw CannotPlot(WIFEXITED(status) && WEXITSTATUS(status) == kNotFound
                         ? "the charts are drawn by gnuplot, which is not there; install the "
                           "package gnuplot-nox"
                         : "gnuplot could not draw a chart: " + output);
  }
  return output;
}

std::string replaced(const std::string& text, const char* pattern, const std::string& by) {
  return std::regex_replace(text, std::regex(pattern), by);
}

}  // namespace

std::string svgOf(const std::string& script, int width, int height, const std::string& name,
                  const std::string& title) {
  std::string svg = outputOf(fmt::format(
      "set terminal svg size {},{} dynamic noenhanced font 'sans-serif,12' name '{}'\n{}", width,
      height, name, script));
  svg.erase(0, svg.find("<svg") + 4);
  svg = replaced(svg, "<title>[^<]*</title>|<desc>[^<]*</desc>", "");
  svg = replaced(svg, R"re((id|xlink:href)=(['"])(#?))re", "$1=$2$3" + name + "-");
  svg = replaced(svg, R"(rgb\( *1, *2, *3\))", "currentColor");
  svg = replaced(svg, R"re( color="(black|white|gray|red)")re", "");
  svg = replaced(svg, R"(stroke="black")", R"(stroke="currentColor")");
  return fmt::format(R"(<svg role="img" aria-label="{}"{})", escaped(title), svg);
}

}  // namespace survey
