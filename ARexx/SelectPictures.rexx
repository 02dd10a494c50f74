/* Selects the pictures among the shown entries and nothing else.
   $VER: SelectPictures.rexx 1.0 (21.11.2026) */
options results

PicturePattern = "#?.(jpg|jpeg|png|gif|iff|ilbm)"
"SELECTNONE"
"PATTERN PATTERN" PicturePattern
exit rc
