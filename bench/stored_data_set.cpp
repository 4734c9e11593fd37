#include "bench/stored_data_set.h"

#include <algorithm>
#include <memory>

#include "emulator/host_error.h"
#include "emulator/list.h"
#include "emulator/sink_object.h"
#include "emulator/store/storing_sink.h"
#include "emulator/stream_object.h"

namespace bench {

std::int64_t Import(LibraryUnderTest& library, emulator::DataStore& store, const std::string& id,
                    const std::string& bytes, const char* syntax) {
  const auto transaction = store.Begin(emulator::Access::kWrite);
  emulator::StoringSink sink(*transaction, id);
  emulator::Host host;
  host.ScribbleHandedOutBytes(false);
  const std::string arguments = emulator::ListBuilder()
                                    .Integer(host.Add(std::make_shared<emulator::MemoryStream>(bytes)))
                                    .String(syntax)
                                    .Integer(host.Add(std::make_shared<emulator::SinkObject>(sink)))
                                    .Integer(0)
                                    .Bytes();
  library.Call("zfDecomposeStream", arguments);
  transaction->Commit();
  return sink.Elements();
}

std::string ComposeArguments(const std::string& id, const char* syntax, std::uint32_t output_oref,
                             std::uint32_t pixels_oref) {
  return emulator::ListBuilder()
      .Integer(output_oref)
      .String(id)
      .String(syntax)
      .String(syntax)
      .Integer(pixels_oref)
      .Bytes();
}

emulator::Value MemoryOutput::Call(std::string_view method, std::span<const emulator::Value> arguments) {
  if (method != "Write") return Object::Call(method, arguments);
  const auto* const bytes = std::get_if<std::string>(arguments.data());
  if (bytes == nullptr || bytes->size() > bytes_.size() - used_)
    throw emulator::HostError{emulator::kWriteError};
  std::copy(bytes->begin(), bytes->end(), bytes_.begin() + static_cast<std::ptrdiff_t>(used_));
  used_ += bytes->size();
  return {};
}

}  // namespace bench
