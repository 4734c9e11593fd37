#include <gtest/gtest.h>

#include <cstdint>

#include "emulator/stream_object.h"

namespace emulator {
namespace {

std::string Peek(Object& stream, std::int64_t count) {
  return AsBytes(stream.Call("Peek", std::vector<Value>{count}));
}

std::string Read(Object& stream, std::int64_t count) {
  return AsBytes(stream.Call("Read", std::vector<Value>{count}));
}

void Skip(Object& stream, std::int64_t count) { stream.Call("Skip", std::vector<Value>{count}); }

void Write(Object& stream, std::string bytes) { stream.Call("Write", std::vector<Value>{std::move(bytes)}); }

std::int64_t Position(Object& stream) { return AsInteger(stream.Property("Position")); }

std::int64_t Size(Object& stream) { return AsInteger(stream.Property("Size")); }

int CodeOf(Object& stream, std::string_view method, const std::vector<Value>& arguments) {
  try {
    stream.Call(method, arguments);
  } catch (const HostError& error) {
    return error.code;
  }
  return 0;
}

TEST(Stream, CountsPositionsFromOneAndSizesOneBehindTheLastByte) {
  MemoryStream stream("0123456789");
  EXPECT_EQ(Position(stream), 1);
  EXPECT_EQ(Size(stream), 11);
  MemoryStream empty;
  EXPECT_EQ(Position(empty), 1);
  EXPECT_EQ(Size(empty), 1);
}

TEST(Stream, PeekStaysReadAndSkipMove) {
  MemoryStream stream("0123456789");
  EXPECT_EQ(Peek(stream, 3), "012");
  EXPECT_EQ(Position(stream), 1);
  EXPECT_EQ(Read(stream, 3), "012");
  EXPECT_EQ(Position(stream), 4);
  Skip(stream, 2);
  EXPECT_EQ(Position(stream), 6);
  EXPECT_EQ(Peek(stream, 100), "56789");
  EXPECT_EQ(Read(stream, 100), "56789");
  EXPECT_EQ(Position(stream), 11);
  EXPECT_EQ(Peek(stream, 1), "");
  EXPECT_EQ(Read(stream, 1), "");
}

TEST(Stream, SkipStopsAtTheEnd) {
  MemoryStream stream("0123");
  Skip(stream, std::int64_t{1} << 40);
  EXPECT_EQ(Position(stream), 5);
}

TEST(Stream, WriteAppendsAndLeavesThePosition) {
  MemoryStream stream("01");
  Skip(stream, 1);
  Write(stream, std::string("23\0", 3));
  EXPECT_EQ(stream.Bytes(), std::string("0123\0", 5));
  EXPECT_EQ(Position(stream), 2);
  EXPECT_EQ(Size(stream), 6);
  EXPECT_EQ(stream.Writes(), 1U);
}

TEST(Stream, MovesToAPositionWithinIt) {
  MemoryStream stream("0123");
  stream.MoveTo(3);
  EXPECT_EQ(Peek(stream, 8), "23");
  stream.MoveTo(-5);
  EXPECT_EQ(Position(stream), 1);
  stream.MoveTo(100);
  EXPECT_EQ(Position(stream), 5);
}

TEST(Stream, RefusesWhatItDoesNotKnow) {
  MemoryStream stream("0123");
  EXPECT_EQ(CodeOf(stream, "peek", {std::int64_t{1}}), kMethodMissing);
  EXPECT_EQ(CodeOf(stream, "Peek", {}), kWrongParameters);
  EXPECT_EQ(CodeOf(stream, "Peek", {std::int64_t{-1}}), kWrongParameters);
  EXPECT_EQ(CodeOf(stream, "Skip", {std::int64_t{-1}}), kWrongParameters);
  EXPECT_EQ(CodeOf(stream, "Read", {std::int64_t{1}, std::int64_t{2}}), kWrongParameters);
  EXPECT_EQ(CodeOf(stream, "Write", {}), kWrongParameters);
  try {
    stream.Property("Length");
    FAIL();
  } catch (const HostError& error) {
    EXPECT_EQ(error.code, kPropertyMissing);
  }
}

TEST(Stream, TakesTheLargestCountThereIs) {
  MemoryStream stream("0123");
  stream.PeekBeyond(1);
  Skip(stream, 1);
  EXPECT_EQ(Peek(stream, INT64_MAX), "123");
  EXPECT_EQ(Read(stream, INT64_MAX), "123");
}

TEST(Stream, MisbehavesAsTold) {
  MemoryStream stream("0123456789");
  stream.EmptyPeekAt(2);
  stream.EmptyReadAt(1);
  EXPECT_EQ(Peek(stream, 4), "0123");
  EXPECT_EQ(Peek(stream, 4), "");
  EXPECT_EQ(Peek(stream, 4), "0123");
  EXPECT_EQ(Read(stream, 4), "");
  stream.HandOutAtMost(2);
  EXPECT_EQ(Peek(stream, 4), "01");
  EXPECT_EQ(Read(stream, 4), "01");
  stream.HandOutAtMost(0);
  stream.PeekBeyond(3);
  EXPECT_EQ(Peek(stream, 4), "2345678");
  EXPECT_EQ(Peek(stream, 8), "23456789") << "no more than there is";
  stream.PretendLarger(std::int64_t{1} << 32);
  EXPECT_EQ(Position(stream), 3 + (std::int64_t{1} << 32));
  EXPECT_EQ(Size(stream), 11 + (std::int64_t{1} << 32));
  EXPECT_EQ(stream.Peeks(), 6U);
  EXPECT_EQ(stream.Reads(), 2U);
}

}  // namespace
}  // namespace emulator
