	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $16, %rsp
.Lmain_B1:
	movq $34, %rax
	movq $34, %rcx
	cmpq %rcx, %rax
	setne %al
	movzbq %al, %rax
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	testq %rax, %rax
	jne .Lmain_B2
.Lmain_B3:
	leaq .LC1(%rip), %rdi
	call krel_print@PLT
	jmp .Lmain_B2
.Lmain_B2:
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "' != '"
.LC1:
	.string "equal\\n"
	.section .note.GNU-stack,"",@progbits
