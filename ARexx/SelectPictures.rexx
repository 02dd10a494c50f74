/* Selects the pictures among the shown entries and nothing else.
   $VER: SelectPictures.rexx 1.1 (22.11.2026) */

"SELECTBYTYPE 6"
exit rc
