#include "modules/VessaDCM/exception_ladder.h"

#include <exception>
#include <new>

#include "dicom/exception.h"
#include "modules/VessaDCM/frame_state.h"

namespace vessa {

void KeepCurrentExceptionText() noexcept {
  try {
    throw;
  } catch (const CException& failure) {
    TheFrameState().error_text.Assign(failure.Text());
  } catch (const std::bad_alloc&) {
    return;
  } catch (const std::exception& failure) {
    TheFrameState().error_text.Assign(failure.what());
  } catch (...) {
    return;
  }
}

}  // namespace vessa
