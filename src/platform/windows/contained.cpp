// A catch-all handler sees the exceptions of its own compiler only, so this uses the system's mechanism: on
// x64 a scope table with one line, by which every exception that leaves the call continues at label 2; on x86
// a record on the stack, which names a handler that does the same.
#include "platform/contained.h"

extern "C" int TavlynContained(void (*work)(void*), void* argument);

#ifdef __i386__

// The record lies in the frame, so that the handler finds the frame from the record's address. From %ebp:
//   -24 the record before   -20 the handler   -12 -8 -4 registers of the caller's
__asm__(R"(
  .text
  .p2align 4
  .globl _TavlynContained
_TavlynContained:
  pushl %ebp
  movl %esp, %ebp
  pushl %ebx
  pushl %esi
  pushl %edi
  subl $4, %esp
  pushl $TavlynGoOn
  pushl %fs:0
  movl %esp, %fs:0
  subl $12, %esp
  pushl 12(%ebp)
  call *8(%ebp)
  movl $1, %eax
1:
  movl -24(%ebp), %ecx
  movl %ecx, %fs:0
  leal -12(%ebp), %esp
  popl %edi
  popl %esi
  popl %ebx
  popl %ebp
  ret

  # Called with the exception and the record; 6: an unwinding is on its way already, and passes by.
TavlynGoOn:
  movl 4(%esp), %eax
  testl $6, 4(%eax)
  jnz 2f
  movl 8(%esp), %ebx
  pushl %ebx
  pushl $0
  pushl %eax
  pushl $0
  pushl %ebx
  call _RtlUnwind@16
  popl %ebx
  leal 24(%ebx), %ebp
  xorl %eax, %eax
  jmp 1b
2:
  movl $1, %eax
  ret
)");

#else

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

#endif

namespace tavlyn::platform {

bool Contained(void (*work)(void*), void* argument) { return TavlynContained(work, argument) != 0; }

}  // namespace tavlyn::platform
