// Writes the workbooks of three JavaScript libraries into the folder given. The libraries (exceljs,
// xlsx, xlsx-populate) are looked for where the script is run.
const { createRequire } = require("module");
const path = require("path");
const load = createRequire(path.join(process.cwd(), "x.js"));
const ExcelJS = load("exceljs");
const SheetJS = load("xlsx");
const XlsxPopulate = load("xlsx-populate");
const content = require("./content.json");
const target = (name) => path.join(process.argv[2], name);
const rows = content.rows.map((row) => row.map((v, i) => (i === 3 ? new Date(v + "T00:00:00Z") : v)));

function fillExcelJs(book) {
    const sheet = book.addWorksheet(content.sheet);
    sheet.columns = [{}, { width: 30 }, {}, {}, {}];
    const title = sheet.getRow(1);
    title.height = 30;
    title.getCell(1).value = content.title;
    title.getCell(1).font = { name: "Arial", size: 14, bold: true };
    sheet.mergeCells("A1:E1");
    content.headings.forEach((text, i) => {
        const cell = sheet.getRow(2).getCell(i + 1);
        cell.value = text;
        cell.fill = { type: "pattern", pattern: "solid", fgColor: { argb: "FFDDDDDD" } };
    });
    rows.forEach((row, r) => row.forEach((value, i) => {
        const cell = sheet.getRow(r + 3).getCell(i + 1);
        cell.value = value;
        if (i === 3) cell.numFmt = "dd.mm.yyyy";
    }));
    return sheet;
}

function sheetJs(name, options) {
    const sheet = SheetJS.utils.aoa_to_sheet([[content.title], content.headings]);
    content.rows.forEach((row, r) => row.forEach((value, i) => {
        const cell = SheetJS.utils.encode_cell({ r: r + 2, c: i });
        const days = (Date.parse(value + "T00:00:00Z") - Date.UTC(1899, 11, 30)) / 86400000;
        sheet[cell] = i === 3 ? { t: "n", v: days, z: "dd.mm.yyyy" }
            : { t: typeof value === "number" ? "n" : "s", v: value };
    }));
    sheet["!ref"] = "A1:E4";
    sheet["!merges"] = [SheetJS.utils.decode_range("A1:E1")];
    sheet["!cols"] = [{}, { wch: 30 }];
    sheet["!rows"] = [{ hpt: 30 }];
    const book = SheetJS.utils.book_new();
    SheetJS.utils.book_append_sheet(book, sheet, content.sheet);
    SheetJS.writeFile(book, target(name), { compression: true, ...options });
}

async function populate() {
    const book = await XlsxPopulate.fromBlankAsync();
    const sheet = book.sheet(0).name(content.sheet);
    sheet.column("B").width(30);
    sheet.row(1).height(30);
    sheet.cell("A1").value(content.title).style({ bold: true, fontFamily: "Arial", fontSize: 14 });
    sheet.range("A1:E1").merged(true);
    content.headings.forEach((text, i) => sheet.cell(2, i + 1).value(text).style("fill", "DDDDDD"));
    content.rows.forEach((row, r) => row.forEach((value, i) => {
        const cell = sheet.cell(r + 3, i + 1);
        if (i === 3) cell.value(XlsxPopulate.dateToNumber(new Date(value + "T00:00:00")))
            .style("numberFormat", "dd.mm.yyyy");
        else cell.value(value);
    }));
    await book.toFileAsync(target("xlsx_populate.xlsx"));
}

async function main() {
    const book = new ExcelJS.Workbook();
    fillExcelJs(book);
    await book.xlsx.writeFile(target("exceljs.xlsx"));
    const stream = new ExcelJS.stream.xlsx.WorkbookWriter({
        filename: target("exceljs_stream.xlsx"), useStyles: true, useSharedStrings: false });
    fillExcelJs(stream).commit();
    await stream.commit();
    sheetJs("sheetjs.xlsx", { bookSST: false });
    sheetJs("sheetjs_shared.xlsx", { bookSST: true });
    await populate();
}

main();
