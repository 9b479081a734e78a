/// The methods that write the whole model anew, from the client arrays, for every repetition: what
/// a program does whose vertices change from frame to frame. The writing is measured.
#include <array>

#include "engine/Memory.h"
#include "engine/methods/BufferedModel.h"
#include "engine/methods/Repetition.h"
#include "platform/gl/DriverMemory.h"
#include "platform/gl/Fence.h"
#include "platform/process/Sentences.h"

namespace {

/// Through memory of our own, from which the driver copies.
class SubDataStream final : public BufferedModel {
 public:
  explicit SubDataStream(const ModelSource& source)
      : BufferedModel(source),
        source_(source),
        strips_(source.layout),
        written_(allocateBlock<std::byte>(source.byteSize(), "the stream's vertices")) {
    makeStore(GL_ARRAY_BUFFER, source.byteSize(), nullptr, GL_STREAM_DRAW);
  }

  void draw(int reps, bool thrash) override {
    const auto size = static_cast<GLsizeiptrARB>(source_.byteSize());
    repeatModel(reps, thrash, [=, this] {
      source_.interleave(written_.get());
      glBufferSubDataARB(GL_ARRAY_BUFFER, 0, size, written_.get());
      strips_.draw(source_.mode);
    });
  }

 private:
  ModelSource source_;
  Strips strips_;
  Block<std::byte> written_;
};

/// Into the buffer's memory, which the driver may replace, as what it held is given up.
class MapRangeStream final : public BufferedModel {
 public:
  explicit MapRangeStream(const ModelSource& source)
      : BufferedModel(source), source_(source), strips_(source.layout) {
    makeStore(GL_ARRAY_BUFFER, source.byteSize(), nullptr, GL_STREAM_DRAW);
  }

  void draw(int reps, bool thrash) override {
    const auto size = static_cast<GLsizeiptr>(source_.byteSize());
    repeatModel(reps, thrash, [=, this] {
      void* const memory = glMapBufferRange(GL_ARRAY_BUFFER, 0, size,
                                            GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT);
      if (memory == nullptr) {
        endWithoutBuffer(source_.byteSize());
      }
      source_.interleave(memory);
      if (glUnmapBufferARB(GL_ARRAY_BUFFER) == GL_FALSE) {
        glFinish();
        endWith("the driver lost the vertices that were written into a mapped buffer.");
      }
      strips_.draw(source_.mode);
    });
  }

 private:
  ModelSource source_;
  Strips strips_;
};

/// Into a buffer that stays mapped, one place after the other; a place is waited for when its turn
/// comes while the driver still draws from it.
class PersistentStream final : public BufferedModel {
 public:
  explicit PersistentStream(const ModelSource& source) : BufferedModel(source), source_(source) {
    constexpr GLbitfield kAccess = GL_MAP_WRITE_BIT | GL_MAP_PERSISTENT_BIT | GL_MAP_COHERENT_BIT;
    const std::size_t size = kRingSize * source.byteSize();
    glBufferStorage(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(size), nullptr, kAccess);
    memory_ = static_cast<std::byte*>(
        glMapBufferRange(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(size), kAccess));
    if (memory_ == nullptr) {
      endWithoutBuffer(size);
    }
    for (std::uint32_t place = 0; place < kRingSize; ++place) {
      strips_.emplace_back(source.layout, place * source.layout.vertexCount);
    }
  }

  void draw(int reps, bool thrash) override {
    const std::size_t size = source_.byteSize();
    repeatModel(reps, thrash, [=, this] {
      const std::size_t place = next_;
      next_ = place + 1 < kRingSize ? place + 1 : 0;
      drawn_[place].pass();
      source_.interleave(memory_ + place * size);
      strips_[place].draw(source_.mode);
      drawn_[place].set();
    });
  }

 private:
  ModelSource source_;
  std::byte* memory_ = nullptr;
  std::vector<Strips> strips_;
  std::array<Fence, kRingSize> drawn_;
  std::size_t next_ = 0;
};

}  // namespace

std::unique_ptr<RetainedModel> makeSubDataStream(const ModelSource& source) {
  return std::make_unique<SubDataStream>(source);
}

std::unique_ptr<RetainedModel> makeMapRangeStream(const ModelSource& source) {
  return std::make_unique<MapRangeStream>(source);
}

std::unique_ptr<RetainedModel> makePersistentStream(const ModelSource& source) {
  return std::make_unique<PersistentStream>(source);
}
