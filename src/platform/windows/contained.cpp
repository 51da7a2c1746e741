// A catch-all of the compiler's sees the exceptions of that compiler only. So the system's own way is taken:
// a scope table with one line, which says for everything that leaves the call: go on at 2.
#include "platform/contained.h"

extern "C" int TavlynContained(void (*work)(void*), void* argument);

__asm__(R"(
  .text
  .p2align 4
  .globl TavlynContained
  .def TavlynContained; .scl 2; .type 32; .endef
  .seh_proc TavlynContained
TavlynContained:
  subq $40, %rsp
  .seh_stackalloc 40
  .seh_endprologue
  movq %rcx, %rax
  movq %rdx, %rcx
0:
  call *%rax
  nop  # where the call leads back to belongs to the line too
1:
  movl $1, %eax
  addq $40, %rsp
  ret
2:
  xorl %eax, %eax
  addq $40, %rsp
  ret
  .seh_handler __C_specific_handler, @except
  .seh_handlerdata
  .long 1
  .rva 0b, 1b
  .long 1
  .rva 2b
  .text
  .seh_endproc
)");

namespace tavlyn::platform {

bool Contained(void (*work)(void*), void* argument) { return TavlynContained(work, argument) != 0; }

}  // namespace tavlyn::platform
