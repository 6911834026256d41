// SPDX-License-Identifier: MIT
/* Six instructions that a stack of 16-byte alignment makes crash, and the like that it does not. */
__declspec(dllexport) void SpillRegisters(void) {
  __asm__ volatile(
      "vmovdqa %ymm0, (%rsp)\n"
      "vmovdqa 0x40(%rsp), %ymm15\n"
      "vmovaps %ymm6, -0x20(%rbp)\n"
      "vmovapd %ymm1, 0x20(%rsp,%rax,8)\n"
      "vmovdqa64 %zmm17, 0x80(%rsp)\n"
      "vmovntdq %ymm2, 0x20(%rsp)\n"
      /* harmless: no alignment wanted, 16 bytes, registers alone, and memory of another kind */
      "vmovdqu %ymm0, (%rsp)\n"
      "vmovups %ymm6, -0x20(%rbp)\n"
      "vmovdqa %xmm0, 0x10(%rsp)\n"
      "movaps %xmm6, 0x30(%rsp)\n"
      "vmovdqa %ymm0, %ymm1\n"
      "vmovdqa (%rax), %ymm1\n"
      "vpaddb 0x20(%rsp), %ymm1, %ymm1\n");
}
