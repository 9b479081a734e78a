/// Calls whose crash or hang must not become ours: graphics drivers start in a process of their own
/// before they are trusted.
#pragma once

#include <chrono>
#include <functional>
#include <string>

/// Who is to blame when an isolated call fails, and what to do, as parts of a sentence.
struct Suspect {
  std::string who;   ///< "the driver"
  std::string cure;  ///< "reinstall it"
};

/// $SORVANTA_PATIENCE in seconds, as a driver under a debugger is slow and not broken; else 15 s.
std::chrono::milliseconds usualPatience();

/// Runs `work` in a child process and returns what it returned. Throws HeadlessTrouble: with the
/// message of what `work` threw, or with a sentence about the suspect where the child died, ended,
/// or did not answer in time and was killed. What the child wrote to standard error is not shown,
/// but the last line of it ends the message. This process should not have used a driver before:
/// the child is a copy without its threads.
std::string callIsolated(const std::function<std::string()>& work, const Suspect& suspect,
                         std::chrono::milliseconds patience = usualPatience());
