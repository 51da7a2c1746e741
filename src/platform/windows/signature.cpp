#include "platform/windows/signature.h"

#include <windows.h>

// They need windows.h, which does not come with them.
#include <softpub.h>
#include <wintrust.h>

namespace tavlyn::platform {

bool VerifyFileSignature(const wchar_t* path) {
  WINTRUST_FILE_INFO file{};
  file.cbStruct = sizeof file;
  file.pcwszFilePath = path;

  WINTRUST_DATA data{};
  data.cbStruct = sizeof data;
  data.dwUIChoice = WTD_UI_NONE;
  data.fdwRevocationChecks = WTD_REVOKE_NONE;
  data.dwUnionChoice = WTD_CHOICE_FILE;
  data.pFile = &file;
  data.dwStateAction = WTD_STATEACTION_VERIFY;

  GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
  const LONG verdict = WinVerifyTrust(nullptr, &action, &data);
  // What the first call keeps of the file is given back, whatever its verdict.
  data.dwStateAction = WTD_STATEACTION_CLOSE;
  WinVerifyTrust(nullptr, &action, &data);
  return verdict == ERROR_SUCCESS;
}

}  // namespace tavlyn::platform
