#include "emulator/host.h"

#include "emulator/callback_table.h"
#include "emulator/machine.h"
#include "emulator/memory_globals.h"

namespace emulator {
Host::Host() : Host(std::make_shared<MemoryGlobals>()) {}

Host::Host(std::shared_ptr<Globals> globals)
    : globals_(std::move(globals)), machine_(std::make_unique<Machine>(*this)), previous_(current_) {
  current_ = this;
}

Host::~Host() { current_ = previous_; }

const vessa::HostServices* Host::Table() { return &CallbackTable(); }

std::uint32_t Host::Add(std::shared_ptr<Object> object) {
  objects_.push_back(std::move(object));
  return static_cast<std::uint32_t>(objects_.size());
}

void Host::Remove(std::uint32_t oref) {
  if (Find(oref) != nullptr) objects_[oref - 1] = nullptr;
}

Object* Host::Find(std::uint32_t oref) const {
  return oref == 0 || oref > objects_.size() ? nullptr : objects_[oref - 1].get();
}

std::shared_ptr<Object> Host::Share(std::uint32_t oref) const {
  return oref == 0 || oref > objects_.size() ? nullptr : objects_[oref - 1];
}

std::size_t Host::StackDepth() const { return machine_->Stack().Depth(); }

std::size_t Host::OpenLongStrings() const { return machine_->Areas().Open(); }

void Host::ResetStack() {
  machine_->Stack().Clear();
  machine_->Areas().Clear();
}

void Host::Record(bool on) {
  recording_ = on;
  is_watched_ = recording_ || observer_;
}

void Host::Observe(std::function<void(const Callback&)> observer) {
  observer_ = std::move(observer);
  is_watched_ = recording_ || observer_;
}

void Host::ScribbleHandedOutBytes(bool on) { machine_->SetScribbling(on); }

}  // namespace emulator
