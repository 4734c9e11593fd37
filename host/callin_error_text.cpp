#include "host/callin_error_text.h"

#include <cstddef>
#include <iterator>
#include <string_view>

namespace vessa {
namespace {

constexpr Status kFirstCode = -17;
constexpr std::string_view kNoText = "Unknown callin error";

// One row a code, from kFirstCode upward; an empty one has no words.
constexpr std::string_view kTexts[] = {
    "invalid Vessa' instance (invalid shdir) (interface error)",  // -17
    "password change required (interface error)",                 // -16
    "process not authenticated (interface error)",                // -15
    "an output EXSTR must be null (interface error)",             // -14
    "VessaConvert was called to get a result but there's no result to return (interface "
    "error)",  // -13
    "a function was called with an argument that was out of range or otherwise invalid "
    "(interface error)",                                                             // -12
    "VessaAbort: the process wasn't executing on the Vessa side (interface error)",  // -11
    "the return buffer was too small so only part of the requested item was returned "
    "(interface error)",                                                    // -10
    "unknown error code in persave (interface error)",                      // -9
    "return buffer too small, nothing returned (interface error)",          // -8
    "not connected to Vessa (interface error)",                             // -7
    "failed due to CTRL/C (special case of VessaError) (interface error)",  // -6
    {},                                                                     // -5
    "connection was broken (interface error)",                              // -4
    "a string argument is too long (interface error)",                      // -3
    "already connected (interface error)",                                  // -2
    "failure (code -1) (interface error)",                                  // -1
    "success (code 0)",                                                     // 0
    "max number",                                                           // 1
    "select",                                                               // 2
    "syntax",                                                               // 3
    "labelredef",                                                           // 4
    "max string",                                                           // 5
    "function",                                                             // 6
    "interrupt",                                                            // 7
    "noline",                                                               // 8
    "undefined",                                                            // 9
    "system",                                                               // 10
    "edited",                                                               // 11
    "command",                                                              // 12
    "maxarray",                                                             // 13
    "name",                                                                 // 14
    "store",                                                                // 15
    "subscript",                                                            // 16
    "noroutine",                                                            // 17
    "divide",                                                               // 18
    "<SWIZZLE FAIL>",                                                       // 19
    "string stack",                                                         // 20
    "framestack",                                                           // 21
    "unimplemented",                                                        // 22
    "exceeded quota (wsextent)",                                            // 23
    "not open",                                                             // 24
    "argstack",                                                             // 25
    "m11 tape error",                                                       // 26
    "protect",                                                              // 27
    "database",                                                             // 28
    "file full",                                                            // 29
    "naked",                                                                // 30
    "routineload",                                                          // 31
    "terminator",                                                           // 32
    "disk hard",                                                            // 33
    "block #",                                                              // 34
    "device name",                                                          // 35
    "nojob",                                                                // 36
    "read",                                                                 // 37
    "write",                                                                // 38
    "end of file",                                                          // 39
    "parameter",                                                            // 40
    "network",                                                              // 41
    "recompile",                                                            // 42
    "directory",                                                            // 43
    "max scope",                                                            // 44
    "cluster failed",                                                       // 45
    "MAXERROR (internal problem)",                                          // 46
    "lost an external connection",                                          // 47
    "ERNOMBX (code 48)",                                                    // 48
    "ERNOCP (code 49)",                                                     // 49
    "ERNOWD  (code 50)",                                                    // 50
    "ERNOGC (code 51)",                                                     // 51
    "<MAGTAPE>",                                                            // 52
    {},                                                                     // 53
    "ERDOWN (code 54)",                                                     // 54
    "ERCLNUP (code 55)",                                                    // 55
    "ERMAXPID (code 56)",                                                   // 56
    "<SIGNONS INHIBITED>",                                                  // 57
    "<HALTED>",                                                             // 58
    "<WAIT FOR M/xx INIT.. TO COMPLT>",                                     // 59
    "<NOT PRIMARY VOLUME>",                                                 // 60
    "<CORRUPT VOLUME SET>",                                                 // 61
    "<INVALID MAP NUMBER>",                                                 // 62
    "<VOLUME SET ALREADY CREATED>",                                         // 63
    "<VOLUME IS NOT FORMATTED>",                                            // 64
    "<CONFLICTING BLOCK NUMBERS>",                                          // 65
    "<COLLATION>",                                                          // 66
    "<ZTRAP>",                                                              // 67
    "<NODEV>",                                                              // 68
    "<LANGUAGE MISMATCH>",                                                  // 69
    "<NOSYS>",                                                              // 70
    "<BADIMPLICIT>",                                                        // 71
    "<NETGLOREF>",                                                          // 72
    "<NETFORMAT>",                                                          // 73
    "<DSCON>",                                                              // 74
    "<NETVERSION>",                                                         // 75
    "<NETJOBMAX>",                                                          // 76
    "<NETRETRY>",                                                           // 77
    "<NAMEADD>",                                                            // 78
    "<NETLOCK>",                                                            // 79
    "<ILLEGAL VALUE>",                                                      // 80
    "<TOOMANYFILES>",                                                       // 81
    "<LIST>",                                                               // 82
    "<NAMESPACE>",                                                          // 83
    "<COMMITFAIL>",                                                         // 84
    "<ROLLFAIL>",                                                           // 85
    "<NETSRVFAIL>",                                                         // 86
    "<COLLATEMISMATCH>",                                                    // 87
    "<SLMSPAN>",                                                            // 88
    "<WIDE CHAR>",                                                          // 89
    "<LINELEVEL>",                                                          // 90
    "<DUPLICATEARG>",                                                       // 91
    "<GLODEFCHANGE>",                                                       // 92
    "<COLLATECHANGE>",                                                      // 93
    "<NORESTART>",                                                          // 94
    "<ROUDEFCHANGE>",                                                       // 95
    "<MNEMONICSPACE>",                                                      // 96
    "<INVTRANSLOCK>",                                                       // 97
    "<INVTRANSQUIT>",                                                       // 98
    "<ECODETRAP>",                                                          // 99
    "<LOCKLOST>",                                                           // 100
    "<DATALOST>",                                                           // 101
    "<TRANSLOST>",                                                          // 102
    "<ZOLE>",                                                               // 103
    {},                                                                     // 104
    {},                                                                     // 105
    "<COLLATION NOT SUPPORTED>",                                            // 106
    "<NLS TABLE>",                                                          // 107
    "<TRANSLATE>",                                                          // 108
    "<NULL VALUE>",                                                         // 109
    "<MISSING VALUE>",                                                      // 110
    "<UNKNOWN TYPE>",                                                       // 111
    "<VALUE OUT OF RANGE>",                                                 // 112
    "<RANGE>",                                                              // 113
    "<DOMAINSPACERETRY>",                                                   // 114
    "<CLIENT-SERVER MISMATCH>",                                             // 115
    "<STRMISMATCH>",                                                        // 116
    "<INVALID CLASS>",                                                      // 117
    "<INTERNAL OBJECT ERROR>",                                              // 118
    "<INVALID OREF>",                                                       // 119
    "<METHOD DOES NOT EXIST>",                                              // 120
    "<PROPERTY DOES NOT EXIST>",                                            // 121
    "<CLASS DOES NOT EXIST>",                                               // 122
    "<CLASS DESCRIPTOR>",                                                   // 123
    "<CLASS COMPILING>",                                                    // 124
    "<CLASS RECOMPILED>",                                                   // 125
    "<INSUFFICIENT CLASS MEMORY>",                                          // 126
    "<TOO MANY USERS OF CLASS>",                                            // 127
    "<TOO MANY OREFS>",                                                     // 128
    "<CANNOT GET THIS PROPERTY>",                                           // 129
    "<CANNOT SET THIS PROPERTY>",                                           // 130
    "<REMOTE CLASS RECOMPILED>",                                            // 131
    "<REMOTE CLASS EDITED>",                                                // 132
    "<CLASS EDITED>",                                                       // 133
    "<CLASS TOO BIG TO LOAD>",                                              // 134
    "<CLASS TOO BIG TO SAVE>",                                              // 135
    "<CORRUPT OBJECT>",                                                     // 136
    "<DISCONNECT>",                                                         // 137
    "<NO CURRENT OBJECT>",                                                  // 138
    "<OUT OF $ZF HEAP SPACE>",                                              // 139
    "<TOO MANY CLASSES>",                                                   // 140
    "<NETWORK DATA UPDATE FAILED - STRMISMATCH>",                           // 141
    "<NETWORK DATA UPDATE FAILED - STRINGSTACK>",                           // 142
    "<NETWORK DATA UPDATE FAILED - DIRECTORY>",                             // 143
    "<NETWORK DATA UPDATE FAILED - DISKHARD>",                              // 144
    "<NETWORK DATA UPDATE FAILED - DATABASE>",                              // 145
    "<NETWORK DATA UPDATE FAILED - CLUSTERFAILED>",                         // 146
    "<NETWORK DATA .... - CLIENT-SERVER MISMATCH>",                         // 147
    "<NETWORK DATA UPDATE FAILED - PROTECT>",                               // 148
    "<NETWORK DATA UPDATE FAILED - BLOCKNUMBER>",                           // 149
    "<NETWORK DATA UPDATE FAILED - DISKFULL>",                              // 150
    "<NETWORK DATA UPDATE FAILED - MAXSTRING>",                             // 151
    "<NETWORK DATA UPDATE FAILED - SUBSCRIPT>",                             // 152
    "<NETWORK DATA UPDATE FAILED - SYSTEM>",                                // 153
    "<NETWORK DATA UPDATE FAILED - WIDECHAR>",                              // 154
    "<NETWORK DATA UPDATE FAILED - NETVERSION>",                            // 155
    "<NETWORK DATA UPDATE FAILED - NETFORMAT>",                             // 156
    "<NETWORK DATA UPDATE FAILED - NETGLOREF>",                             // 157
    "<INVALID BIT STRING>",                                                 // 158
    "<ROUTINE TOO BIG TO SAVE>",                                            // 159
    "<NO SOURCE>",                                                          // 160
    "<STORE> - malloc failed",                                              // 161
    "<INVALID TYPE>",                                                       // 162
    "<INVALID OREF>",                                                       // 163
    "<INVALID ARGUMENT>",                                                   // 164
    "<DYNAMIC LIBRARY LOAD>",                                               // 165
    "<Java VM not loaded>",                                                 // 166
    "<PRIVATE PROPERTY>",                                                   // 167
    "<PRIVATE METHOD>",                                                     // 168
    "<Java Exception>",                                                     // 169
    {},                                                                     // 170
    "<DDP JOB OVERFLOW>",                                                   // 171
    {},                                                                     // 172
    "<TRANSACTION LEVEL>",                                                  // 173
    "<RESJOB>",                                                             // 174
    "<ALARM>",                                                              // 175
    "<TOO MANY LONG STRINGS>",                                              // 176
    "<EXTERNAL INTERRUPT>",                                                 // 177
    "<UNIMPLEMENTED FLOAT>",                                                // 178
    "<MV WRAPUP>",                                                          // 179
    {},                                                                     // 180
    "<PROTECT>",                                                            // 181
    "<ARRAY DIMENSION>",                                                    // 182
    "<THROW>",                                                              // 183
    "<INVALID FILE VARIABLE>",                                              // 184
    "<INVALID SELECT LIST>",                                                // 185
    "<COMPLEX PATTERN>",                                                    // 186
    "<CLASS PROPERTY>",                                                     // 187
    "<MAX LOCKS>",                                                          // 188
    "<LOCK TABLE FULL>",                                                    // 189
    "<SERVER LOCK TABLE FULL>",                                             // 190
    "<MAX ROUTINES>",                                                       // 191
    "<SHARED MEM HEAP>",                                                    // 192
    "<MAXINCREMENT>",                                                       // 193
    "<WRONG NAMESPACE>",                                                    // 194
    "<_CALLBACK SYNTAX>",                                                   // 195
    "<OBJECT DISPATCH>",                                                    // 196
    "<COMMON MISMATCH>",                                                    // 197
    "<ROUTINE LIMIT>",                                                      // 198
    "<MAX $ZF STRING>",                                                     // 199
    "<ROUTINE TOO COMPLEX>",                                                // 200
    "<INVALID GLOBAL REFERENCE>",                                           // 201
    "<TCPWRITE>",                                                           // 202
};
constexpr Status kLastCode = kFirstCode + static_cast<Status>(std::size(kTexts)) - 1;

constexpr std::string_view TextOf(Status code) {
  if (code < kFirstCode || code > kLastCode) return kNoText;
  const std::string_view text = kTexts[code - kFirstCode];
  return text.empty() ? kNoText : text;
}

// The rows stand by position; these pin them along the way.
static_assert(kLastCode == 202);
static_assert(TextOf(0) == "success (code 0)");
static_assert(TextOf(52) == "<MAGTAPE>" && TextOf(54) == "ERDOWN (code 54)");
static_assert(TextOf(119) == "<INVALID OREF>" && TextOf(163) == TextOf(119));
static_assert(TextOf(157) == "<NETWORK DATA UPDATE FAILED - NETGLOREF>");
static_assert(TextOf(181) == "<PROTECT>" && TextOf(kLastCode) == "<TCPWRITE>");

}  // namespace

std::string CallinErrorText(Status code) { return std::string(TextOf(code)); }

std::string CallinErrorMessage(Status code) {
  std::string message = "Vessa' callin error: ";
  message += TextOf(code);
  return message;
}

}  // namespace vessa
