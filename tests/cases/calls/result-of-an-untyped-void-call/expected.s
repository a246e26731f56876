	.text

	.globl g
	.type g, @function
g:
	pushq %rbp
	movq %rsp, %rbp
.Lg_B1:
	jmp .Lg_return
.Lg_return:
	leave
	ret
	.size g, .-g

	.globl main
	.type main, @function
main:
	pushq %rbp
	movq %rsp, %rbp
	subq $32, %rsp
.Lmain_B1:
	call g@PLT
	movq %rax, -8(%rbp)
	movq -8(%rbp), %rax
	movq $0, %r11
	leaq -24(%rbp), %r10
	movq %rax, (%r10,%r11,8)
	xorl %eax, %eax
	jmp .Lmain_return
.Lmain_return:
	leave
	ret
	.size main, .-main
	.section .note.GNU-stack,"",@progbits
