/// The engine as a worker's subject: one test object on one context without a window.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "engine/SorvantaTest.h"
#include "platform/headless/HeadlessContext.h"
#include "survey/worker/FrameClocks.h"
#include "survey/worker/Serve.h"
#include "words/Attributes.h"

namespace survey {

class EngineSubject final : public Subject {
 public:
  EngineSubject() = default;
  EngineSubject(const EngineSubject&) = delete;
  EngineSubject& operator=(const EngineSubject&) = delete;
  ~EngineSubject() override;

  Driver begin(const Begin& begin) override;
  CellAnswer set(const Cell& cell) override;
  Frame draw(std::chrono::microseconds leastTime) override;

 private:
  void setAttributes(const std::vector<NamedAttribute>& wanted);

  std::vector<std::unique_ptr<std::byte[]>> heap;  ///< what was allocated before the context
  std::optional<HeadlessContext> context;
  PerformanceHistory history;
  std::optional<SorvantaTest> test;
  std::optional<FrameClocks> clocks;
  std::optional<Primitive> primitive;  ///< as set last
  std::vector<NamedAttribute> attributes;
};

}  // namespace survey
