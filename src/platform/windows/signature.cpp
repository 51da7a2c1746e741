#include "platform/windows/signature.h"

#include <windows.h>

// These need windows.h but do not include it.
#include <softpub.h>
#include <wintrust.h>

#include "platform/system_library.h"

namespace tavlyn::platform {
namespace {

// An import would be searched for beside the application first, but the verifier must be the system's own.
decltype(&WinVerifyTrust) SystemVerifier() {
  decltype(&WinVerifyTrust) verify = nullptr;
  void* library = LoadSystemLibrary("WINTRUST.DLL");
  if (library != nullptr) Bind(library, "WinVerifyTrust", verify);
  return verify;
}

}  // namespace

bool VerifyFileSignature(const wchar_t* path) {
  static const auto verify = SystemVerifier();
  if (verify == nullptr) return false;
  WINTRUST_FILE_INFO file{};
  file.cbStruct = sizeof file;
  file.pcwszFilePath = path;

  WINTRUST_DATA data{};
  data.cbStruct = sizeof data;
  data.dwUIChoice = WTD_UI_NONE;
  data.fdwRevocationChecks = WTD_REVOKE_NONE;
  // Otherwise a missing certificate would be fetched, which takes minutes without a network.
  data.dwProvFlags = WTD_CACHE_ONLY_URL_RETRIEVAL;
  data.dwUnionChoice = WTD_CHOICE_FILE;
  data.pFile = &file;
  data.dwStateAction = WTD_STATEACTION_VERIFY;

  GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
  const LONG verdict = verify(nullptr, &action, &data);
  // Releases what the first call keeps of the file, whatever its verdict.
  data.dwStateAction = WTD_STATEACTION_CLOSE;
  verify(nullptr, &action, &data);
  return verdict == ERROR_SUCCESS;
}

}  // namespace tavlyn::platform
