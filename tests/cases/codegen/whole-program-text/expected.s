	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lmain_B1:
	leaq .LC0(%rip), %rdi
	call krel_print@PLT
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "hi\\n"
	.section .note.GNU-stack,"",@progbits
