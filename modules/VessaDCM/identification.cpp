// What the library file says of itself to those who look into it, without loading it: "@(#)" marks such a text. No code
// refers to it; the linker is told to keep it.

extern "C" {
extern const char kVessaIdentification[];
const char kVessaIdentification[] = "@(#)VessaDCM " VESSA_VERSION " commit " VESSA_COMMIT;
}
