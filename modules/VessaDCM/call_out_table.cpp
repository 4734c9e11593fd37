#include "modules/VessaDCM/call_out_table.h"

#include <exception>

#include "host/callin.h"
#include "modules/VessaDCM/buffer_frame.h"
#include "modules/VessaDCM/call_outs.h"

namespace vessa {
namespace {

// The shapes of the rows: the host's marshalling codes and the entry that they describe cannot disagree.

struct ListInAndOut {
  static constexpr const char* kTypes = "Bz";
  using Entry = std::int32_t(HostString*);
  static constexpr CallOutEntry Wrap(Entry* entry) { return {.buffer = entry}; }
};

struct TextInAndOut {
  static constexpr const char* kTypes = "B";
  using Entry = std::int32_t(HostString*);
  static constexpr CallOutEntry Wrap(Entry* entry) { return {.buffer = entry}; }
};

struct BufferAndInteger {
  static constexpr const char* kTypes = "Bi";
  using Entry = std::int32_t(HostString*, std::int32_t);
  static constexpr CallOutEntry Wrap(Entry* entry) { return {.buffer_and_integer = entry}; }
};

struct IntegerAndTwoObjects {
  static constexpr const char* kTypes = "ioo";
  using Entry = std::int32_t(std::int32_t, std::int32_t, std::int32_t);
  static constexpr CallOutEntry Wrap(Entry* entry) { return {.three_integers = entry}; }
};

struct ArgumentsUnread {
  static constexpr const char* kTypes = "coi";
  using Entry = std::int32_t();
  static constexpr CallOutEntry Wrap(Entry* entry) { return {.arguments_unread = entry}; }
};

template <class Shape>
constexpr CallOutRow Row(const char* name, typename Shape::Entry* entry) {
  return {name, Shape::kTypes, Shape::Wrap(entry)};
}

constexpr CallOutRow kCallOuts[] = {
    Row<ListInAndOut>("zfPLACEHOLDER", zfPLACEHOLDER),
    Row<ListInAndOut>("zfTagInfo", BufferFrame<kTagInfoArguments, zfTagInfo>),
    Row<ListInAndOut>("zfNameTag", BufferFrame<kNameTagArguments, zfNameTag>),
    Row<ArgumentsUnread>("zfDICOMServer", zfDICOMServer),
    Row<IntegerAndTwoObjects>("zfDeflateStream", zfDeflateStream),
    Row<IntegerAndTwoObjects>("zfInflateStream", zfInflateStream),
    Row<BufferAndInteger>("zfSwitchByteOrdering", zfSwitchByteOrdering),
    Row<ListInAndOut>("zfDecomposeStream", BufferFrame<kDecomposeStreamArguments, zfDecomposeStream>),
    Row<ListInAndOut>("zfParsePropertyReference",
                      BufferFrame<kParsePropertyReferenceArguments, zfParsePropertyReference>),
    Row<ListInAndOut>(
        "zfParsePropertySubscriptReference",
        BufferFrame<kParsePropertySubscriptReferenceArguments, zfParsePropertySubscriptReference>),
    Row<ListInAndOut>("zfQueryStream", BufferFrame<kQueryStreamArguments, zfQueryStream>),
    Row<ListInAndOut>("zfGetNextSubscript", BufferFrame<kGetNextSubscriptArguments, zfGetNextSubscript>),
    Row<ListInAndOut>("zfComposeStream", BufferFrame<kComposeStreamArguments, zfComposeStream>),
    Row<ListInAndOut>("zfQueryFileOrDataSet",
                      BufferFrame<kQueryFileOrDataSetArguments, zfQueryFileOrDataSet>),
    Row<TextInAndOut>("zfBigHexToDecimal", zfBigHexToDecimal),
    {},  // ends the table
};

/// Where the compiler emulates storage of a thread, the first look at a thread's exceptions allocates it, and ends the
/// process when there is no memory. That look is taken here, while the host still loads the library. It is one that the
/// compiler may not leave out, as it may std::uncaught_exceptions().
void ReserveStorageForExceptions() { static_cast<void>(std::current_exception()); }

}  // namespace

std::int32_t zfDICOMServer() { return -1; }

std::int32_t zfPLACEHOLDER(HostString* /*buffer*/) { return 0; }

}  // namespace vessa

extern "C" const vessa::CallOutRow* GetZFTable(void* /*first*/, const vessa::HostServices* callbacks) {
  vessa::ReserveStorageForExceptions();
  vessa::SetHostServices(callbacks);
  return vessa::kCallOuts;
}
