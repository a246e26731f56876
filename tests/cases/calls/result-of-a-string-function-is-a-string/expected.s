	.text

	.globl text
	.type text, @function
text:
	pushq %rbp
	movq %rsp, %rbp
.Ltext_B1:
	leaq .LC0(%rip), %rax
	jmp .Ltext_return
.Ltext_return:
	leave
	ret
	.size text, .-text

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $64, %rsp
.Lmain_B1:
	call text@PLT
	movq %rax, -8(%rbp)
	call text@PLT
	movq %rax, -16(%rbp)
	movq -8(%rbp), %rdi
	movq -16(%rbp), %rsi
	call krel_concat@PLT
	movq %rax, -24(%rbp)
	movq -24(%rbp), %rax
	movq %rax, -48(%rbp)
	movq -48(%rbp), %rdi
	leaq .LC1(%rip), %rsi
	call krel_concat@PLT
	movq %rax, -32(%rbp)
	movq -32(%rbp), %rdi
	call krel_print@PLT
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main

	.section .rodata
.LC0:
	.string "t"
.LC1:
	.string "\\n"
	.section .note.GNU-stack,"",@progbits
