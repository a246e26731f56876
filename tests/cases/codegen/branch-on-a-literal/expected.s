	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lmain_B1:
	leaq .LC0(%rip), %rax
	testq %rax, %rax
	jne .Lmain_B2
.Lmain_B3:
	jmp .Lmain_B2
.Lmain_B2:
	movq $1, %rax
	testq %rax, %rax
	jne .Lmain_B4
.Lmain_B5:
	jmp .Lmain_B4
.Lmain_B4:
	movq $5, %rax
	testq %rax, %rax
	jne .Lmain_B6
.Lmain_B7:
	jmp .Lmain_B6
.Lmain_B6:
	movq $113, %rax
	testq %rax, %rax
	jne .Lmain_B8
.Lmain_B9:
	jmp .Lmain_B8
.Lmain_B8:
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "x goto B9"
	.section .note.GNU-stack,"",@progbits
