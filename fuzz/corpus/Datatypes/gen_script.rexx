gen_script.rexx/* $VER: script.rexx 1.5 (24.12.2001) */
say "hello"
