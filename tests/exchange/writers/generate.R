# Writes the workbook of R's openxlsx into the folder given: Rscript generate.R FOLDER
library(openxlsx)

target <- commandArgs(trailingOnly = TRUE)[1]
book <- createWorkbook()
addWorksheet(book, "Документы")
writeData(book, 1, "Книга выдачи", startRow = 1)
writeData(book, 1, data.frame(
    "Дубликат" = c("нет", "Дубликат"), "Фамилия" = c("Иванов", "Петрова-Водкина"),
    "Имя" = c("Анна", "Ян & <Ко>"), "Дата рождения" = as.Date(c("2001-03-09", "1999-12-31")),
    "Часы" = c(144, 72), check.names = FALSE), startRow = 2)
mergeCells(book, 1, cols = 1:5, rows = 1)
setColWidths(book, 1, cols = 2, widths = 30)
setRowHeights(book, 1, rows = 1, heights = 30)
addStyle(book, 1, createStyle(fontName = "Arial", fontSize = 14, textDecoration = "bold"), 1, 1)
addStyle(book, 1, createStyle(fgFill = "#DDDDDD"), rows = 2, cols = 1:5)
addStyle(book, 1, createStyle(numFmt = "dd.mm.yyyy"), rows = 3:4, cols = 4)
saveWorkbook(book, file.path(target, "r_openxlsx.xlsx"), overwrite = TRUE)
