	.text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $96, %rsp
.Lmain_B1:
	movq $2, %rax
	movq %rax, -80(%rbp)
	movq $100, %rax
	movq %rax, -80(%rbp)
	movq $9, %rax
	movq %rax, -72(%rbp)
	movq $1, %rax
	movq $0, %r11
	leaq -64(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	movq $2, %rax
	movq $1, %r11
	leaq -64(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	movq $0, %r11
	leaq -64(%rbp), %r10
	movq (%r10,%r11,8), %rdi
	call krel_inttostring@PLT
	movq %rax, -8(%rbp)
	movq $1, %r11
	leaq -64(%rbp), %r10
	movq (%r10,%r11,8), %rdi
	call krel_inttostring@PLT
	movq %rax, -16(%rbp)
	movq -72(%rbp), %rdi
	call krel_inttostring@PLT
	movq %rax, -24(%rbp)
	movq -8(%rbp), %rdi
	movq -16(%rbp), %rsi
	call krel_concat@PLT
	movq %rax, -32(%rbp)
	movq -32(%rbp), %rdi
	movq -24(%rbp), %rsi
	call krel_concat@PLT
	movq %rax, -40(%rbp)
	movq -40(%rbp), %rdi
	leaq .LC0(%rip), %rsi
	call krel_concat@PLT
	movq %rax, -48(%rbp)
	movq -48(%rbp), %rdi
	call krel_print@PLT
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "\\n"
	.section .note.GNU-stack,"",@progbits
