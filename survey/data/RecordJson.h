/// The record's parts as JSON, for files and between processes. Reading throws nlohmann's
/// exceptions for what is not as it was written.
#pragma once

#include <nlohmann/json.hpp>

#include "survey/data/Record.h"

NLOHMANN_JSON_SERIALIZE_ENUM(RunsAs, {{RunsAs::kItself, "itself"},
                                      {RunsAs::kStandIn, "stand-in"},
                                      {RunsAs::kOther, "other"},
                                      {RunsAs::kRefused, "refused"}})

namespace survey {

/// What the members of a frame's array are.
inline constexpr const char* kFrameColumns[] = {"primitives", "wall_ns",  "cpu_ns",    "wait_ns",
                                                "gpu_ns",     "steal_ns", "disturbed", "late_ns"};

void to_json(nlohmann::json& json, const Frame& frame);
void from_json(const nlohmann::json& json, Frame& frame);
void to_json(nlohmann::json& json, const Cache& cache);
void from_json(const nlohmann::json& json, Cache& cache);
void to_json(nlohmann::json& json, const CellState& state);
void from_json(const nlohmann::json& json, CellState& state);

NLOHMANN_JSON_SERIALIZE_ENUM(Ending, {{Ending::kTimeUp, "time up"},
                                      {Ending::kPrecise, "precise"},
                                      {Ending::kInterrupted, "interrupted"},
                                      {Ending::kNoWorker, "no worker"},
                                      {Ending::kNothingLeft, "nothing left"}})

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Cell, method, primitive, detail, with)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(CellAnswer, runsAs, sentence, sent, verticesPerCall,
                                   callsPerModel, primitivesPerModel, inCoreProfile)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Library, path, build)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Driver, number, device, vendor, renderer, version, software,
                                   libraries, environment)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Machine, host, kernel, processor, processors, virtualMachine,
                                   powerSource, caches)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(MachineState, when, load, governor, clock, steal)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Program, version, commit, buildType, compiler, flags, optimised)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Settings, seconds, precision, frame, seed, device, onScreen,
                                   patience, commandLine)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Visit, cell, block, workers, start, frames, yardstick)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(FunctionTime, function, file, size, nanoseconds)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Profile, primitives, time, others, functions, whyNot)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(ProfiledVisit, cell, block, sides)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Question, triangles, strips, changes, core)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Side, name, environment, driver, cells, whyNoWorker)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Record, program, settings, machine, before, after, cells, sides,
                                   visits, profiles, ending, signal, elapsed)

}  // namespace survey
