#include "vdoc/property_reference.h"

#include "vdoc/message_texts.h"
#include "vdoc/reference_cursor.h"

namespace vessa {
namespace {

// Tags of group 8000 and above become negative numbers: the same 32 bits.
void AppendTag(Tag tag, VessaList& list) { list.AppendInt(static_cast<std::int32_t>(tag.Value())); }

std::int32_t ReadItemNumber(CReferenceCursor& cursor) {
  const std::int32_t item = cursor.ReadInteger();
  if (item == 0) cursor.Fail(vdoc_text::kSubscriptIsZero);
  return item;
}

constexpr std::int32_t kEmptySubscript = 0;

// Between the brackets: an item number, nothing, or two double quotes.
std::int32_t ReadSubscript(CReferenceCursor& cursor) {
  if (cursor.IsAt(']')) return kEmptySubscript;
  if (!cursor.IsAt('"')) return ReadItemNumber(cursor);
  cursor.Expect('"');
  cursor.Expect('"');
  return kEmptySubscript;
}

}  // namespace

void ParsePropertyReference(std::string_view text, VessaList& list) {
  CReferenceCursor cursor(text);
  const Tag first = cursor.ReadTag();
  AppendTag(first, list);
  while (cursor.IsAt('[')) {
    cursor.CheckSequence(first);  // the tags behind it are never tested; that is kept
    cursor.Expect('[');
    const std::int32_t item = ReadItemNumber(cursor);
    cursor.Expect(']');
    list.AppendInt(item);
    cursor.Expect('.');
    AppendTag(cursor.ReadTag(), list);
  }
  if (!cursor.AtEnd()) cursor.Fail(vdoc_text::kTextAfterReference);
}

void ParsePropertySubscriptReference(std::string_view text, VessaList& list) {
  CReferenceCursor cursor(text);
  while (true) {
    const Tag tag = cursor.ReadTag();
    AppendTag(tag, list);
    cursor.CheckSequence(tag);
    cursor.Expect('[');
    const std::int32_t subscript = ReadSubscript(cursor);
    cursor.Expect(']');
    list.AppendInt(subscript);
    if (!cursor.IsAt('.')) break;
    if (subscript == kEmptySubscript) cursor.Fail(vdoc_text::kEmptySubscriptInside);
    cursor.Expect('.');
  }
  if (!cursor.AtEnd()) cursor.Fail(vdoc_text::kTextAfterSubscriptReference);
}

}  // namespace vessa
