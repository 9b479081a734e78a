/// The record's parts as JSON, for files and between processes. Reading throws nlohmann's
/// exceptions for what is not as it was written.
#pragma once

#include <nlohmann/json.hpp>

#include "survey/record/Record.h"

NLOHMANN_JSON_SERIALIZE_ENUM(RunsAs, {{RunsAs::kItself, "itself"},
                                      {RunsAs::kStandIn, "stand-in"},
                                      {RunsAs::kOther, "other"},
                                      {RunsAs::kRefused, "refused"}})

namespace survey {

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Cell, method, primitive, detail, with)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(CellAnswer, support, sentence, sent, verticesPerCall,
                                   callsPerModel, primitivesPerModel, inCoreProfile)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Driver, number, device, vendor, renderer, version, software,
                                   libraries)

/// What the members of a frame's array are.
inline constexpr const char* kFrameColumns[] = {"primitives", "wall_ns",  "cpu_ns",    "wait_ns",
                                                "gpu_ns",     "steal_ns", "disturbed", "late_ns"};

void to_json(nlohmann::json& json, const Frame& frame);
void from_json(const nlohmann::json& json, Frame& frame);
void to_json(nlohmann::json& json, const Cache& cache);
void from_json(const nlohmann::json& json, Cache& cache);
void to_json(nlohmann::json& json, const Record& record);
void from_json(const nlohmann::json& json, Record& record);

}  // namespace survey
